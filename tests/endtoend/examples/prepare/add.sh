kpbook new shop.kpbook --company 测试商行 --year 2026 --month 1 --warehouse 门店
