"""The sources: where each package keeps its translations and how they are read.

SOURCES maps a source's name to a Source; its `read(root)` yields (tag, string, original), where tag
is the language as the package writes it, and original the English string that was translated, or
None. A source yields its English text too, tagged `en`: what stayed English in a translation is
recognised by it.
"""

import collections
import glob
import json
import os
import re
import zipfile

from . import readers

Source = collections.namedtuple("Source", "read accelerator wiki")


def _paths(root, pattern):
    """Matching files in a fixed order, links left out."""
    found = glob.glob(os.path.join(root, pattern), recursive=True)
    return sorted(path for path in found if not os.path.islink(path))


def _content(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def _catalogues(root, pattern, tag_of):
    for path in _paths(root, pattern):
        for original, translation in readers.read_mo(path):
            # The game marks who speaks: "female^Soldier".
            original = re.sub(r"^[a-z_ ]+\^", "", original)
            yield "en", original, None
            yield tag_of(path), translation, original


def _in_messages_folder(path):
    return re.search(r"/([^/]+)/LC_MESSAGES/", path).group(1)


def _wordpress_tag(path):
    tag = re.search(r"([a-z]{2,3}(?:_[A-Z]{2})?(?:_formal|_informal)?)\.mo$", path)
    return tag.group(1) if tag else "qqq"


def libreoffice(root):
    return _catalogues(root, "libreoffice-l10n-*/**/*.mo", _in_messages_folder)


def wesnoth(root):
    return _catalogues(root, "wesnoth-*/**/*.mo", _in_messages_folder)


def wordpress(root):
    return _catalogues(root, "wordpress-l10n/**/*.mo", _wordpress_tag)


def _pages(root, pattern, tag_of, is_english, part=None):
    for path in _paths(root, pattern):
        tag = tag_of(path)
        content = _content(path)
        if part:
            inner = part.search(content)
            content = inner.group(1) if inner else ""
        for paragraph in readers.read_paragraphs(content):
            yield "en" if is_english(tag) else tag, paragraph, None


def gnome_user_docs(root):
    return _pages(root, "gnome-user-docs/usr/share/help/*/*/*.page",
                  lambda path: re.search(r"/help/([^/]+)/", path).group(1), lambda tag: tag == "C")


def libreoffice_help(root):
    return _pages(root, "libreoffice-help-*/usr/share/libreoffice/help/*/text/**/*.html",
                  lambda path: re.search(r"/help/([^/]+)/text/", path).group(1),
                  lambda tag: tag.startswith("en"),
                  re.compile(r"<div id=\"DisplayArea\"[^>]*>(.*?)</body>", re.S))


def debian_handbook(root):
    return _pages(root, "debian-handbook/usr/share/doc/debian-handbook/html/*/*.html",
                  lambda path: re.search(r"/html/([^/]+)/", path).group(1),
                  lambda tag: tag.startswith("en"))


_IN_PACK = {".ftl": readers.read_ftl, ".properties": readers.read_properties,
            ".dtd": readers.read_dtd}


def firefox(root):
    for path in _paths(root, "firefox-esr-l10n-*/**/*.xpi"):
        tag = re.search(r"/firefox-esr-l10n-([^/]+)/", path).group(1)
        with zipfile.ZipFile(path) as pack:
            for name in sorted(pack.namelist()):
                read = _IN_PACK.get(os.path.splitext(name)[1])
                if read:
                    for value in read(pack.read(name).decode("utf-8", "replace")):
                        yield "en" if tag.startswith("en") else tag, value, None


def chromium(root):
    for path in _paths(root, "chromium-l10n/usr/lib/chromium/locales/*.pak"):
        tag = os.path.basename(path)[:-len(".pak")]
        if not re.search("FEMININE|MASCULINE|NEUTER", tag):
            for _, value in readers.read_pak(path):
                for line in value.split("\n"):
                    yield "en" if tag.startswith("en") else tag, line, None


def mediawiki(root):
    for path in (_paths(root, "mediawiki/**/i18n/**/*.json") +
                 _paths(root, "mediawiki/**/languages/i18n/*.json")):
        tag = os.path.basename(path)[:-len(".json")]
        # One extension is under another licence than the rest.
        if tag in ("qqq", "qqx") or "/SecureLinkFixer/" in path:
            continue
        for key, value in json.loads(_content(path)).items():
            if key[:1] != "@" and isinstance(value, str):
                for line in value.split("\n"):
                    yield tag, line, None


SOURCES = {
    "mediawiki": Source(mediawiki, "", True),
    "chromium": Source(chromium, "&", False),
    "firefox": Source(firefox, "", False),
    "libreoffice": Source(libreoffice, "~", False),
    "gnome-user-docs": Source(gnome_user_docs, "", False),
    "wordpress": Source(wordpress, "", False),
    "libreoffice-help": Source(libreoffice_help, "", False),
    "debian-handbook": Source(debian_handbook, "", False),
    "wesnoth": Source(wesnoth, "", False),
}
