kpbook sql shop.kpbook "Select TOP 5 商品编号,商品名称,默认单价 From 商品设置 Order by pdID" -o prices.xlsx
kpbook export shop.kpbook exported
kpbook new copy.kpbook --bare
