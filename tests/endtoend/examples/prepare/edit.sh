kpbook new shop.kpbook --company 测试商行 --year 2026 --month 1 --warehouse 中心仓库 --warehouse 门店
kpbook add shop.kpbook class 种类=商品 ClassCode=01 ClassName=水泥
kpbook add shop.kpbook product 商品编号=01001 商品名称=普通硅酸盐水泥 规格=425# 计量单位=吨 ClassCode=水泥
kpbook add shop.kpbook customer 企业名称=杭州宏图建材有限公司 单位名称=杭州宏图
