"""The commands at the root: what they tell before they do it, and on a system that they do not know."""
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "support"))
import cases

# What the commands call besides the tools that a case takes away or stands its own in place of.
PLAIN_TOOLS = ("bash", "awk", "sed", "grep", "dirname", "basename", "cat", "mkdir", "env")


def system(folder, **tools):
    """A PATH with plain tools only, and scripts by the names of others."""
    for name in PLAIN_TOOLS:
        (folder / name).symlink_to(shutil.which(name))
    for name, script in tools.items():
        tool = folder / name.replace("_", "-")
        tool.write_text(f"#!{shutil.which('bash')}\n{script}\n", encoding="utf-8")
        tool.chmod(0o755)
    return {"PATH": str(folder)}


def run(environment, *words):
    result = subprocess.run(list(words), cwd=ROOT, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True, check=False, timeout=60)
    return result.returncode, result.stdout


def install(environment):
    return run(environment, "bash", "-c", "source tools/common.sh; install_packages play")


def test_every_word_of_play_is_explained(folder):
    _, text = run(system(folder), "bash", "./play", "--help")
    source = (ROOT / "play").read_text(encoding="utf-8")
    words = set(re.findall(r"--[a-z]+", "".join(re.findall(r"^ +(--[^)]*)\)$", source, re.M))))
    words |= {"--headless", "--verbose"}
    assert len(words) >= 16, words
    for word in words:
        assert re.search(rf"^  {word} +\w", text, re.M), f"{word} in\n{text}"


def test_a_system_without_the_package_tools_is_told_what_is_needed(folder):
    code, text = install(system(folder))
    assert code == 1 and "libsdl2-dev" in text and "These commands are missing: c++ cmake" in text, text
    assert "not found" not in text, text


def test_what_is_installed_and_how_is_told_before(folder):
    code, text = install(system(folder, dpkg_query="exit 1", id="echo 1000", sudo='exec "$@"', apt_get='echo "apt $*"'))
    assert code == 0, text
    first = text.splitlines()[0]
    assert "'sudo apt-get install'" in first and "libsdl2-dev" in first and "apt update -qq" in text, text


def test_the_help_of_the_importer_builds_nothing(folder):
    code, text = run(system(folder), "bash", "./import-model", "--help")
    assert code == 0 and "--crease N" in text, text


if __name__ == "__main__":
    sys.exit(cases.run(dict(globals()), sys.argv[3:]))
