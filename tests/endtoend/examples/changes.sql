-- The firm calls its warehouses by number.
Update 仓库设置 Set 仓库名称='一号库' Where dpID=1;
Update 仓库设置 Set 仓库名称='二号库' Where dpID=2;
Select dpID,仓库名称 From 仓库设置 Order by dpID;
