import os
import subprocess

import pytest

import tavo


@pytest.fixture(scope="session")
def lexicon(tmp_path_factory):
    """A folder with SysDic and ConnTable."""
    folder = tmp_path_factory.mktemp("lexicon")
    subprocess.run([os.environ["TAVO_MAKE_WORLD"], folder], check=True)
    return folder


@pytest.fixture
def tagger(lexicon):
    with tavo.Tagger(lexicon) as made:
        yield made
