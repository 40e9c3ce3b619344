"""From a translated string to running text, and the judgement whether it is any."""

import html
import re

from . import languages

_ADDRESS = re.compile(r"(?:https?|ftp|file|mailto|irc|about|chrome|resource):/*[^\s<>\"]+"
                      r"|www\.\S+|[\w.+-]+@[\w-]+\.[\w.-]+|(?<!\w)~?/[\w.-]+(?:/[\w.*-]+)+/?")
_PRINTF = re.compile(r"%(?:\d+\$)?[-+#0']*(?:\*|\d+)?(?:\.(?:\*|\d+))?(?:hh|h|ll|l|L|q|j|z|t)?"
                     r"[diouxXeEfFgGaAcCsSpnm]\b|%%|%L?n\b|%L?\d+|%\([\w .]+\)[-+#0]*\d*[a-zA-Z]"
                     r"|%[A-Z][A-Z_]+\b%?|%<[^>]*>|%\{[^}]*\}|%@|%[A-Za-z](?![A-Za-z])")
_VARIABLE = re.compile(r"\$\{[^}]*\}|\$\(?[A-Za-z_]\w*\)?|\$\d+|\{\{[^{}]*\}\}"
                       r"|\{\s*[-$]?[\w.:,%#/ -]*\s*\}|#\{[^}]*\}|@\w+@|\[\[?[A-Z_]+\]?\]")
_CHOICE = re.compile(r"\{\s*\w+\s*,\s*(?:plural|select|selectordinal)\s*,(.*)\}\s*$", re.S)
_WIKI_CHOICE = re.compile(r"\{\{(?:PLURAL|GENDER|GRAMMAR|#\w+)[^{}|]*\|([^{}]*)\}\}", re.I)
_WIKI_LINK = re.compile(r"\[\[(?:[^\]|]*\|)?([^\]|]*)\]\]")
_WIKI_OUTSIDE = re.compile(r"\[(?:https?:)?//\S+\s+([^\]]*)\]")
_TAG = re.compile(r"<[^<>]{0,300}>")
_UNSEEN = re.compile("[\u00ad\u200b\ufeff\u2060\u2066-\u2069\u202a-\u202e]")
_SIGNS = re.compile(r"\\[nrt]|[|*_=~#<>{}\\^`\x00-\x1f]+")


def _last_choice(string):
    """The `other` branch of a message with plural forms."""
    choice = _CHOICE.search(string)
    if not choice:
        return string
    branches = choice.group(1)
    other = branches.rfind("other")
    begin = branches.find("{", max(other, 0))
    if begin < 0:
        return string
    return string[:choice.start()] + " " + branches[begin + 1:].rstrip().rstrip("}")


def _plain_wiki(string):
    for _ in range(3):
        string = _WIKI_CHOICE.sub(lambda m: m.group(1).split("|")[-1].split("=")[-1], string)
    string = _WIKI_OUTSIDE.sub(r"\1", _WIKI_LINK.sub(r"\1", string))
    return string.replace("'''", "").replace("''", "")


def clean(string, accelerator="", wiki=False):
    """Running text of one string: no markup, placeholders, addresses or accelerator marks."""
    if "{" in string and re.search(r", ?(plural|select)", string):
        string = _last_choice(string)
    if wiki:
        string = _plain_wiki(string)
    string = _TAG.sub(" ", string)
    if "&" in string and ";" in string:
        string = _TAG.sub(" ", html.unescape(string))
    string = _VARIABLE.sub(" ", _PRINTF.sub(" ", _ADDRESS.sub(" ", string)))
    if accelerator:
        mark = re.escape(accelerator)
        string = re.sub(r"\s*\(%s\w\)" % mark, "", string)  # East Asian menus: (&F)
        string = re.sub(r"%s(?=\w)" % mark, "", string)
    string = _SIGNS.sub(" ", _UNSEEN.sub("", string))
    return " ".join(string.split()).strip(" -•:;,")


_LETTER = re.compile(r"[^\W\d_]|[\u0900-\u097f\u0e00-\u0e7f]")
_ENGLISH = re.compile(r"\b(the|and|with|this|that|which|from|your|you|are|will|should|have|has|been"
                      r"|was|not|for|can|when|cannot|must|of|be|by)\b", re.I)
_KANA = re.compile("[\u3040-\u30ff]")


def is_running_text(string, text):
    """Whether a cleaned string is a sentence or phrase of the text's language."""
    letters = len(_LETTER.findall(string))
    if not letters:
        return False
    script = languages.script_of(text)
    own = len(languages.LETTERS[script].findall(string))
    if not languages.is_spaced(text):
        return own >= 10 and own >= 0.6 * letters and not (script == "Han" and _KANA.search(string))
    words = [word for word in string.split() if _LETTER.search(word)]
    if script == "Hangul":
        return own >= 8 and own >= 0.6 * letters and len(words) >= 3
    if len(words) < 4 or letters < 15 or own < 0.75 * letters or letters < 0.6 * len(string):
        return False
    if script == "Latin" and text != "en":
        english = len(_ENGLISH.findall(string))
        return english < 2 or english <= 0.15 * len(words)
    return True
