#!/usr/bin/env bash
# Installs the Debian packages in a folder on a bare Debian 12, made for it, and runs them there: kpbook, SQLite's shell with
# kptext, and the C++ example of README built against both kinds of library. bare_debian.sh PACKAGES README SCRATCH
# Exits with 77, and says why, where such a system cannot be made.
set -euo pipefail
packages=$1 readme=$2 scratch=$3
root=$scratch/root

left_out() {
    echo "left out: $*"
    exit 77
}
failed() {
    echo "install.bare_debian: $*" >&2
    exit 1
}
# Runs a command in the bare system, without anything of this one's environment.
inside() {
    chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        bash -euo pipefail -c "$1"
}
# Installs packages with what they declare to depend on, and nothing else.
add() {
    inside "apt-get -q -y --no-install-recommends install $*" >"$scratch/apt.log" 2>&1 || { cat "$scratch/apt.log"; failed "could not install $*"; }
}
# expect WHAT EXPECTED FOUND
expect() {
    [[ $3 == "$2" ]] || failed "$1: expected '$2', found '$3'"
}

((EUID == 0)) || left_out "only root can make a system of its own"
command -v mmdebstrap >/dev/null || left_out "no mmdebstrap"

rm -rf "$scratch"
mkdir -p "$scratch"
trap 'rm -rf --one-file-system "$root"' EXIT
if ! mmdebstrap --variant=apt --dpkgopt=force-unsafe-io --dpkgopt='path-exclude=/usr/share/doc/*' \
    --dpkgopt='path-exclude=/usr/share/locale/*' --skip=cleanup/apt/lists bookworm "$root" >"$scratch/mmdebstrap.log" 2>&1; then
    cat "$scratch/mmdebstrap.log"
    grep -Eq 'resolving|Could not connect|unreachable|Failed to fetch' "$scratch/mmdebstrap.log" && left_out "no network"
    failed "no bare system could be made"
fi
mkdir "$root/debs"
cp "$packages"/*.deb "$root/debs"

echo "kpbook"
inside 'ls /usr/lib/x86_64-linux-gnu/libsqlite3* /usr/bin/g++ 2>/dev/null' && failed "the system is not bare"
add /debs/kpbook_*.deb
expect "packages beside kpbook" kpbook "$(inside 'grep -h " install " /var/log/dpkg.log | tail -n 1 | cut -d" " -f4 | cut -d: -f1')"
cat >"$root/root/opening.csv" <<'END'
仓库,商品编号,数量,金额
中心仓库,01001,120,38400
END
cat >"$root/root/sales.csv" <<'END'
单据,日期,仓库,单位,商品编号,数量,单价
1,2026-1-18,中心仓库,杭州宏图,01001,60,318.25
END
inside 'cd
kpbook new firm.kpbook --company 测试商行 --year 2026 --month 1 --warehouse 中心仓库
printf "商品编号,商品名称,计量单位\n01001,水泥,吨\n01002,Ａ型砖,块\n01003,a型砖,块\n" | kpbook import firm.kpbook 商品设置 -
kpbook add firm.kpbook customer 企业名称=杭州宏图
kpbook opening firm.kpbook opening.csv
kpbook bill add firm.kpbook out sales.csv
kpbook close firm.kpbook --month 1
kpbook check firm.kpbook' >"$scratch/kpbook.log" 2>&1 || { cat "$scratch/kpbook.log"; failed "kpbook"; }
# 120 - 60 tons; 38,400 - 60 * 318.25 yuan.
expect "closing stock" "01001,60,19305" \
    "$(inside 'cd; kpbook report balance firm.kpbook --month 1 -O csv' | python3 -c '
import csv, sys
for row in csv.DictReader(sys.stdin): print(row["商品编号"], row["本期库存数量"], row["本期库存金额"], sep=",")')"
[[ $(inside 'kpbook info odbc:DSN=shop 2>&1 || true') == *libodbc2* ]] || failed "no word of the driver manager that is not there"
[[ -f $root/usr/share/man/man1/kpbook-close.1 || -f $root/usr/share/man/man1/kpbook-close.1.gz ]] || failed "no manual page"

echo "SQLite's shell"
add sqlite3 /debs/libsqlite3-mod-kptext_*.deb
expect "texts in the book's order" "01002 01003 01001 ok" \
    "$(inside 'cd; sqlite3 -readonly -cmd ".load kptext" firm.kpbook "select 商品编号 from 商品设置 order by 商品名称, pdID" \
        "pragma integrity_check"' | paste -sd ' ')"

echo "C++, with the shared library and with the static ones"
add g++ pkg-config /debs/libkptables1_*.deb /debs/libkptables-dev_*.deb
awk '/^```cpp$/ {inside = 1; next} /^```$/ {if (inside) exit} inside' "$readme" >"$root/root/example.cpp"
grep -q 'int main' "$root/root/example.cpp" || failed "README has no example"
inside 'cd; g++ example.cpp -o shared $(pkg-config --cflags --libs kpTables-shared) && ./shared && ldd shared' >"$scratch/shared.log" 2>&1 ||
    { cat "$scratch/shared.log"; failed "the example with the shared library"; }
grep -q 'libkptables.so.1 => /' "$scratch/shared.log" || failed "the example does not use the shared library"
inside 'cd; g++ example.cpp -o static $(pkg-config --cflags --libs kpTables) && ./static && ! ldd static | grep kptables' \
    >"$scratch/static.log" 2>&1 || { cat "$scratch/static.log"; failed "the example with the static libraries"; }
echo "all run"
