"""Downloads the pinned Debian packages and unpacks them; nothing is installed.

`fetch(cache)` leaves one folder per package below `cache`/unpacked. A package whose pinned version
is gone, or whose file is not the one pinned, is reported and stops the recipe: models from other
texts would not be the models that the pins stand for.
"""

import hashlib
import os
import shutil
import subprocess
import sys
import urllib.parse

PINS = os.path.join(os.path.dirname(__file__), "PACKAGES")


class Changed(Exception):
    """A pinned package cannot be had as it was."""


def pinned():
    """List of (name, version, sha256)."""
    with open(PINS, encoding="utf-8") as file:
        return [tuple(line.split()) for line in file if line.strip() and line[0] != "#"]


def _sha256(path):
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest()


def _file_of(name, version, folder):
    prefix = ("%s_%s_" % (name, urllib.parse.quote(version, safe="+~."))).lower()
    found = [file for file in os.listdir(folder) if file.lower().startswith(prefix)]
    return os.path.join(folder, found[0]) if found else None


def _download(wanted, folder):
    """Asks for all at once, and one by one for those that this left out, to name them."""
    for batch in [wanted] + [[one] for one in wanted]:
        missing = [pin for pin in batch if not _file_of(pin[0], pin[1], folder)]
        if missing:
            subprocess.run(["apt-get", "-q", "download"] + ["%s=%s" % pin[:2] for pin in missing],
                           cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                           check=False)


def fetch(cache):
    """Makes every pinned package available below cache/unpacked; returns that folder."""
    files, unpacked = os.path.join(cache, "deb"), os.path.join(cache, "unpacked")
    os.makedirs(files, exist_ok=True)
    os.makedirs(unpacked, exist_ok=True)
    _download(pinned(), files)
    faults = []
    for name, version, digest in pinned():
        path = _file_of(name, version, files)
        if path is None:
            faults.append("%s %s: no longer to be had (try `apt-get update`)" % (name, version))
        elif _sha256(path) != digest:
            faults.append("%s %s: another file than the pinned one" % (name, version))
    if faults:
        raise Changed("\n".join(faults))
    for name, version, digest in pinned():
        folder = os.path.join(unpacked, name)
        stamp = os.path.join(folder, ".sha256")
        if os.path.exists(stamp):
            with open(stamp, encoding="ascii") as file:
                if file.read() == digest:
                    continue
        shutil.rmtree(folder, ignore_errors=True)
        subprocess.run(["dpkg-deb", "-x", _file_of(name, version, files), folder], check=True)
        with open(stamp, "w", encoding="ascii") as file:
            file.write(digest)
        print("unpacked", name, version, file=sys.stderr)
    return unpacked
