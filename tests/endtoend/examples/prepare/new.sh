kpbook new 2026.kpbook --company 测试商行 --year 2026 --month 12 --warehouse 中心仓库
kpbook add 2026.kpbook product 商品编号=01001 商品名称=普通硅酸盐水泥
kpbook opening 2026.kpbook stock.csv
kpbook close 2026.kpbook --month 12
