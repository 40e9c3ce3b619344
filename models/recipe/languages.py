"""Languages of the texts: their names in the sources, their scripts, and what a model mixes.

A text is named by its language, or by language and variant where one language is written in two
ways (`pt_BR`, `nn`, `zh_Hant`); a model is named by two letters. MODEL_TEXTS says which texts a
model's language is made of; a text named twice counts twice.
"""

import re

TEXTS = (
    "en fr de es it pt pt_BR nl da sv nb nn fi is et lv lt pl cs sk hu ro sl hr sr bs mk bg ru uk "
    "be el tr az kk he yi ar fa ur hi th vi ja zh_Hans zh_Hant ko ca gl eu ga cy mt sq eo id ms tl "
    "af sw ka hy mn br tg"
).split()

MODEL_TEXTS = {"pt": ("pt", "pt_BR"), "no": ("nb", "nb", "nn"), "zh": ("zh_Hans", "zh_Hant")}

# Written so alike that only equal amounts of the same sources tell them apart fairly.
CLOSE_FAMILIES = (("bs", "hr"), ("id", "ms"), ("da", "nb", "nn"), ("pt", "pt_BR"),
                  ("zh_Hans", "zh_Hant"))

_ALIASES = {
    "zh": "zh_Hans", "zh_cn": "zh_Hans", "zh_hans": "zh_Hans", "zh_sg": "zh_Hans",
    "zh_tw": "zh_Hant", "zh_hk": "zh_Hant", "zh_hant": "zh_Hant",
    "pt_br": "pt_BR", "no": "nb", "nb_no": "nb", "nn_no": "nn",
    "sr_ec": "sr", "sr_cyrl": "sr", "kk_cyrl": "kk", "tg_cyrl": "tg", "fil": "tl",
    "ji": "yi", "iw": "he",
}
# Another script or spelling than the language's own text.
_REFUSED = {"sr_el", "sr_latn", "kk_latn", "kk_arab", "tg_latn", "be_tarask", "ca_valencia",
            "zh_mo", "zh_classical", "zh_yue", "az_arab", "en_shaw", "ko_kp", "fa_af", "ms_arab", "mn_mong",
            "crh_cyrl", "de_ch", "lzh"}
_BARE = re.compile(r"\.(utf-?8|iso.*)$", re.I)


def text_name(tag):
    """The text that a source's language tag belongs to, or None if it is not wanted."""
    tag = _BARE.sub("", tag.strip()).replace("-", "_").lower()
    if tag in _ALIASES:
        return _ALIASES[tag]
    if tag in _REFUSED or "@" in tag:
        return None
    base, _, rest = tag.partition("_")
    if rest and len(rest) != 2 and rest not in ("formal", "informal"):
        return None
    base = _ALIASES.get(base, base)
    return base if base in TEXTS else None


_SCRIPTS = {
    "Latin": r"A-Za-z\u00aa\u00ba\u00c0-\u024f\u1e00-\u1eff\u0300-\u036f",
    "Cyrillic": r"\u0400-\u052f",
    "Greek": r"\u0370-\u03ff\u1f00-\u1fff",
    "Hebrew": r"\u0590-\u05ff\ufb1d-\ufb4f",
    "Arabic": r"\u0600-\u06ff\u0750-\u077f\ufb50-\ufdff\ufe70-\ufefc",
    "Devanagari": r"\u0900-\u097f",
    "Thai": r"\u0e00-\u0e7f",
    "Japanese": r"\u3040-\u30ff\u4e00-\u9fff\u3400-\u4dbf",
    "Han": r"\u4e00-\u9fff\u3400-\u4dbf",
    "Hangul": r"\uac00-\ud7a3\u1100-\u11ff",
    "Georgian": r"\u10a0-\u10ff\u1c90-\u1cbf",
    "Armenian": r"\u0530-\u058f",
}
_SCRIPT_OF = {
    "Cyrillic": "ru uk be bg mk sr kk mn tg", "Greek": "el", "Hebrew": "he yi", "Arabic": "ar fa ur",
    "Devanagari": "hi", "Thai": "th", "Japanese": "ja", "Han": "zh_Hans zh_Hant", "Hangul": "ko",
    "Georgian": "ka", "Armenian": "hy",
}
_BY_TEXT = {text: script for script, texts in _SCRIPT_OF.items() for text in texts.split()}
LETTERS = {script: re.compile("[%s]" % chars) for script, chars in _SCRIPTS.items()}


def script_of(text):
    """The script that the text is written in."""
    return _BY_TEXT.get(text, "Latin")


def is_spaced(text):
    """Whether words are set off by blanks."""
    return script_of(text) not in ("Japanese", "Han", "Thai")
