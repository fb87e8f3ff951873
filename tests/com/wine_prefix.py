"""Programs for Windows in a Wine prefix of their own, under code page 936. PREFIX is its folder, WIDTH x64 or x86."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile

PREFIX = pathlib.Path(os.environ["PREFIX"])
WIDTH = os.environ.get("WIDTH", "x64")
WINE = shutil.which("wine64") or shutil.which("wine64", path="/usr/lib/wine")
ENVIRONMENT = {**os.environ, "WINEPREFIX": str(PREFIX), "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=",
               "LC_ALL": "zh_CN.UTF-8", "LOCPATH": str(PREFIX) + "-locale", "DISPLAY": ""}
# Where the system's own programs of that width are.
SYSTEM = "C:\\windows\\" + {"x64": "system32", "x86": "syswow64"}[WIDTH] + "\\"


def has_wine():
    """Whether programs of that width can be run here."""
    if WIDTH == "x86" and not (pathlib.Path(ENVIRONMENT.get("WINEDLLPATH", "")) / "fetched").exists():
        return False
    return WINE is not None


def wine(*arguments, timeout=60, **more):
    return subprocess.run([WINE, *map(str, arguments)], env=ENVIRONMENT, timeout=timeout, capture_output=True, **more)


def quiet_wine(*arguments):
    """For what may be the first program: the system's own that it starts would keep its pipes open."""
    subprocess.run([WINE, *arguments], env=ENVIRONMENT, timeout=120, check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def regsvr32(server, *arguments):
    result = wine(SYSTEM + "regsvr32.exe", "/s", *arguments, windows_path(server))
    if result.returncode:
        raise AssertionError(f"regsvr32 {arguments}: {result.returncode}")


def wait_for_the_end():
    """Returns when no program runs in the prefix any more."""
    subprocess.run([WINE.replace("wine64", "wineserver64"), "-w"], env=ENVIRONMENT, timeout=120)


def make_prefix():
    # A locale of its own, of which Wine takes code page 936 and the encoding of file names.
    locale = pathlib.Path(ENVIRONMENT["LOCPATH"])
    if not locale.exists():
        locale.mkdir(parents=True)
        subprocess.run(["localedef", "-i", "zh_CN", "-f", "UTF-8", locale / "zh_CN.UTF-8"], check=True)
    ready = PREFIX / "ready"
    if ready.exists():
        return
    PREFIX.mkdir(parents=True, exist_ok=True)
    quiet_wine("wineboot", "-i")
    # Every user of Windows has these.
    quiet_wine("reg", "add", "HKCU\\Software\\Classes\\CLSID", "/f")
    quiet_wine("reg", "add", "HKCU\\Software\\Wine\\Drivers", "/v", "Graphics", "/d", "null", "/f")
    # The first library that is registered lets Wine register the standard one, stdole2, once more.
    quiet_wine(SYSTEM + "regsvr32.exe", "/s", "scrrun.dll")
    # Until everything that belongs to it has ended, the prefix changes.
    wait_for_the_end()
    ready.touch()


@contextlib.contextmanager
def session():
    """While a program runs, the next one starts without the system's own programs."""
    make_prefix()
    # What an earlier session has left ends by itself; a program that meets it there may wait for it for long.
    wait_for_the_end()
    with subprocess.Popen([WINE, "cmd"], env=ENVIRONMENT, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL) as first:
        quiet_wine("cmd", "/c", "exit")
        yield
        first.communicate(b"exit\r\n", timeout=60)


def script(source, suffix=".vbs", timeout=60):
    """Runs a script, saved in GBK, and answers the lines that its Say wrote."""
    say = {".vbs": """
Dim sayFile
Set sayFile = CreateObject("Scripting.FileSystemObject").CreateTextFile("{out}", True, True)
Sub Say(text)
    sayFile.WriteLine text
End Sub
""", ".js": """
var sayFile = new ActiveXObject("Scripting.FileSystemObject").CreateTextFile("{out}", true, true);
function Say(text) {{ sayFile.WriteLine(text); }}
"""}[suffix]
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "out.txt"
        path = pathlib.Path(folder) / ("script" + suffix)
        out_name = windows_path(out).replace("\\", "\\\\") if suffix == ".js" else windows_path(out)
        path.write_text(say.format(out=out_name) + source, encoding="gbk", newline="\r\n")
        result = wine(SYSTEM + "cscript.exe", "//nologo", windows_path(path), timeout=timeout)
        text = out.read_text(encoding="utf-16") if out.exists() and out.stat().st_size else ""
        return text.splitlines(), result


def run_program(source, *arguments):
    """A script as it stands, saved in GBK; what it echoed, line by line, and the result."""
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "program.vbs"
        path.write_text(source, encoding="gbk", newline="\r\n")
        result = wine(SYSTEM + "cscript.exe", "//nologo", windows_path(path), *arguments)
        return result.stdout.decode("gbk", errors="replace").splitlines(), result
