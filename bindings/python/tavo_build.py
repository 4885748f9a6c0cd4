"""Builds the package's wheels with CMake and this interpreter alone.

Front ends of pip call build_wheel() (PEP 517); `make wheel` runs this file:
    tavo_build.py OUT BUILD [LEXICON NAME]
A LEXICON, a folder that holds one, becomes the package tavo-NAME beside the analyser's. Equal input gives equal bytes:
entries are sorted and have the time SOURCE_DATE_EPOCH.
"""

import base64
import hashlib
import os
import pathlib
import platform
import re
import subprocess
import sys
import time
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
EPOCH = max(int(os.environ.get("SOURCE_DATE_EPOCH", 0)), 315532800)  # zip begins in 1980
REPORT = "report.txt"  # of the import: what it measured, not what the lexicon is


def version():
    return re.search(r'TAVO_VERSION "([0-9.]+)"', (ROOT / "include/tavo/version.h").read_text())[1]


def write_wheel(folder, name, tag, is_pure, metadata, files, scripts=""):
    """`files` maps paths in the wheel to bytes. Returns the wheel's file name."""
    info = f"{name}-{version()}.dist-info"
    purity = str(is_pure).lower()
    files = dict(files)
    files[f"{info}/METADATA"] = metadata.encode()
    files[f"{info}/WHEEL"] = f"Wheel-Version: 1.0\nGenerator: tavo_build\nRoot-Is-Purelib: {purity}\nTag: {tag}\n".encode()
    if scripts:
        files[f"{info}/entry_points.txt"] = scripts.encode()
    record = f"{info}/RECORD"
    rows = []
    for path, data in sorted(files.items()):
        digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
        rows.append(f"{path},sha256={digest},{len(data)}\n")
    files[record] = "".join([*rows, f"{record},,\n"]).encode()
    wheel = f"{name}-{version()}-{tag}.whl"
    os.makedirs(folder, exist_ok=True)
    part = os.path.join(folder, wheel + ".part")
    with zipfile.ZipFile(part, "w", zipfile.ZIP_DEFLATED) as archive:
        for path, data in sorted(files.items()):
            entry = zipfile.ZipInfo(path, time.gmtime(EPOCH)[:6])
            entry.external_attr = (0o755 if path.endswith(".so") else 0o644) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, data)
    os.replace(part, os.path.join(folder, wheel))
    return wheel


def platform_tag():
    """Of the system that the extension was built on, whose C library is the oldest that it runs with."""
    machine = platform.machine()
    name, number = platform.libc_ver()
    return f"manylinux_{number.replace('.', '_')}_{machine}" if name == "glibc" else f"linux_{machine}"


def compile_extension(build):
    subprocess.run(["cmake", "-S", ROOT, "-B", build, "-DCMAKE_BUILD_TYPE=Release"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", build, "--target", "tavo_python", "-j", str(os.cpu_count())], check=True)


def analyser_wheel(folder, build):
    """Of the extension that is in the build folder."""
    files = {f"tavo/{path.name}": path.read_bytes() for path in (HERE / "tavo").iterdir() if path.is_file()}
    extension = pathlib.Path(build) / "python/tavo/_tavo.abi3.so"
    files["tavo/_tavo.abi3.so"] = extension.read_bytes()
    files[f"tavo-{version()}.dist-info/LICENSE"] = (HERE / "LICENSE").read_bytes()
    metadata = (
        f"Metadata-Version: 2.1\nName: tavo\nVersion: {version()}\nSummary: Japanese morphological analysis\n"
        "License: Apache-2.0\nLicense-File: LICENSE\nRequires-Python: >=3.9\n"
        "Classifier: License :: OSI Approved :: Apache Software License\nClassifier: Natural Language :: Japanese\n"
        "Classifier: Topic :: Text Processing :: Linguistic\nClassifier: Typing :: Typed\n"
    )
    scripts = "[console_scripts]\ntavo-py = tavo.__main__:main\n"
    return write_wheel(folder, "tavo", f"cp39-abi3-{platform_tag()}", False, metadata, files, scripts)


def lexicon_wheel(folder, lexicon, name):
    if not re.fullmatch("[a-z0-9_]+", name):
        raise SystemExit(f"a lexicon package's name has small letters, digits and _: {name!r}")
    package = f"tavo_{name}"
    source = pathlib.Path(lexicon)
    if not (source / "SysDic").is_file() or not (source / "ConnTable").is_file():
        raise SystemExit(f"{lexicon}: no lexicon: it has no SysDic and ConnTable")
    files = {f"{package}/{path.name}": path.read_bytes() for path in source.iterdir() if path.is_file() and path.name != REPORT}
    files[f"{package}/__init__.py"] = (
        f'"""The lexicon {name} for the package tavo, which finds it by itself."""\n\nimport os\n\n'
        "#: The folder of the lexicon, for tavo.Tagger().\npath = os.path.dirname(os.path.abspath(__file__))\n"
    ).encode()
    # An init file names the folder that it was made in; the files have the names that are looked for without one.
    files.pop(f"{package}/tavo.init", None)
    metadata = (
        f"Metadata-Version: 2.1\nName: tavo-{name.replace('_', '-')}\nVersion: {version()}\n"
        f"Summary: The lexicon {name} for the package tavo\nRequires-Python: >=3.9\n"
    )
    if f"{package}/COPYING" in files:
        files[f"{package}-{version()}.dist-info/COPYING"] = files[f"{package}/COPYING"]
        metadata += "License-File: COPYING\n"
    return write_wheel(folder, package, "py3-none-any", True, metadata, files)


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    build = str(ROOT / "build-wheel")
    compile_extension(build)
    return analyser_wheel(wheel_directory, build)


def get_requires_for_build_wheel(config_settings=None):
    return []


if __name__ == "__main__":
    out, where, *lexicon_and_name = sys.argv[1:]
    compile_extension(where)
    print(os.path.join(out, analyser_wheel(out, where)))
    if lexicon_and_name:
        print(os.path.join(out, lexicon_wheel(out, *lexicon_and_name)))
