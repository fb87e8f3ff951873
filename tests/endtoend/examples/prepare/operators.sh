kpbook sql shop.kpbook "Delete From 操作员"
