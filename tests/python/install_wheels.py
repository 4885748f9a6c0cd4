"""Makes the wheels of the build, and a virtual environment with both: install_wheels.py FOLDER"""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ["TAVO_BUILD"])
WHEELS = BUILD / "python-wheels"
LEXICON = BUILD / "share" / "tavo"


def make_wheels(folder):
    """Both wheels of what is built; nothing is compiled."""
    os.environ["SOURCE_DATE_EPOCH"] = "1700000000"
    sys.path.insert(0, str(ROOT / "bindings" / "python"))
    import tavo_build

    return [pathlib.Path(folder, name) for name in
            (tavo_build.analyser_wheel(folder, BUILD), tavo_build.lexicon_wheel(folder, LEXICON, "ipadic"))]  # fmt: skip


def main(venv):
    def run(*command):
        subprocess.run([str(word) for word in command], check=True)

    wheels = make_wheels(WHEELS)
    run(sys.executable, "-m", "venv", "--clear", "--system-site-packages", venv)
    pip = [venv / "bin" / "pip", "--disable-pip-version-check"]
    run(*pip, "install", "--quiet", "--no-index", *wheels)
    run(*pip, "uninstall", "--quiet", "--yes", "tavo", "tavo-ipadic")
    left = [*venv.glob("lib/python*/site-packages/tavo*"), *venv.glob("bin/tavo*")]
    if left:
        raise SystemExit(f"uninstalling left {left}")
    run(*pip, "install", "--quiet", "--no-index", *wheels)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
