#!/usr/bin/env bash
# The sample job: job.sh KPBOOK KPSAMPLE. In the folder out, it creates a book with the sample year, closes its first three
# months and shows reports; then a firm's own first month, from an empty book to its report. Where KPTABLES_SERVER is a
# server's URL, the books are on the server, are called by the names that they would have as files, and are kept as files
# in the end.
set -Eeuo pipefail

kpbook=$1
kpsample=$2
samples=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
csv=out/sample
step=""

begin() {
    step=$1
    echo
    echo "== $step"
}
failed() {
    local code=$?
    echo "failed at: $step (exit code $code)" >&2
    exit "$code"
}
trap failed ERR

# The book called out/NAME.kpbook.
book_at() {
    if [[ -n ${KPTABLES_SERVER:-} ]]; then
        echo "$KPTABLES_SERVER&book=$1"
    else
        echo "out/$1.kpbook"
    fi
}
book=$(book_at 2003)
firm=$(book_at 2026)

job() {
    begin "The sample book out/2003.kpbook"
    "$kpsample" "$csv"
    "$kpbook" new "$book" --bare
    for file in "$csv"/*.csv; do
        table=$(basename "$file" .csv)
        "$kpbook" import "$book" "$table" "$file"
    done

    begin "Closing months 1 to 3 of every warehouse"
    for end in 2003-1-31 2003-2-28 2003-3-31; do
        "$kpbook" close "$book" --month "$(cut -d- -f2 <<<"$end")" --cost --date "$end" --answer yes
    done

    begin "Balance of month 3, warehouse 1, first 15 products"
    "$kpbook" sql "$book" "Select TOP 15 P.商品编号,P.商品名称,P.规格,P.计量单位,
        B.上期库存数量 As 期初数量,B.上期库存金额 As 期初金额,B.本期入库数量 As 入库数量,B.本期入库金额 As 入库金额,
        B.本期出库数量 As 出库数量,B.本期出库金额 As 出库金额,B.本期库存数量 As 库存数量,B.本期库存金额 As 库存金额
        From 仓库余额表 As B Inner Join 商品设置 As P On B.pdID=P.pdID
        Where B.dpID=1 And B.月份=3 Order by P.商品编号"

    begin "Outbound bills of warehouse 2, 3 to 7 March"
    "$kpbook" report bills "$book" --direction out --warehouse 2 --from 2003-3-3 --to 2003-3-7

    begin "Movements of warehouse 1 in March, day by day"
    "$kpbook" report daily "$book" --month 3 --warehouse 1

    begin "Goods that went to the projects, month by month"
    "$kpbook" report projects "$book" --measure amount

    begin "All reports of March as pages"
    "$kpbook" report all "$book" --month 3 -o out/reports

    begin "A firm begins its own book, enters a month of bills and closes it: out/2026.kpbook"
    "$kpbook" new "$firm" --company 测试商行 --year 2026 --month 1 --warehouse 中心仓库 --warehouse 门店
    "$kpbook" add "$firm" product 商品编号=01001 商品名称=普通硅酸盐水泥 规格=425# 计量单位=吨
    "$kpbook" add "$firm" product 商品编号=01002 商品名称=白水泥 计量单位=吨
    "$kpbook" add "$firm" product 商品编号=02001 商品名称=螺纹钢 规格=Φ16 计量单位=公斤
    "$kpbook" add "$firm" supplier 企业名称=江南水泥厂
    "$kpbook" add "$firm" supplier 企业名称=沪东钢铁
    "$kpbook" add "$firm" customer 企业名称=杭州宏图建材有限公司 单位名称=杭州宏图
    "$kpbook" add "$firm" project 项目编号=P01 项目名称=春江花苑
    "$kpbook" opening "$firm" "$samples"/firm/opening.csv
    "$kpbook" bill add "$firm" in "$samples"/firm/purchases.csv
    "$kpbook" bill add "$firm" transfer --date 2026-1-15 --warehouse 中心仓库 --to-warehouse 门店 --line 商品=02001,数量=400
    "$kpbook" bill add "$firm" out "$samples"/firm/sales.csv
    "$kpbook" bill add "$firm" cost "$samples"/firm/costs.csv
    "$kpbook" close "$firm" --month 1 --cost --answer yes
    "$kpbook" check "$firm"
    "$kpbook" report balance "$firm" --month 1 --cost
    "$kpbook" report all "$firm" --month 1 --cost -o out/2026-01
}

mkdir -p out
rm -f out/2003.kpbook{,-wal,-shm} out/2026.kpbook{,-wal,-shm}
if [[ -z ${KPTABLES_SERVER:-} ]]; then
    job
    exit
fi
job 2>&1 | while IFS= read -r line; do
    line=${line//"$book"/out/2003.kpbook}
    printf '%s\n' "${line//"$firm"/out/2026.kpbook}"
done
for name in 2003 2026; do
    "$kpbook" backup "$(book_at "$name")" "out/$name.kpbook" 2>/dev/null
done
