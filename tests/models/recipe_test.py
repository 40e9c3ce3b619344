"""Tests of the recipe that makes the models."""

import codecs
import os
import random
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "models"))

from recipe import (charsets, cleaning, fitting, grouping, imitation,  # noqa: E402
                    languages, models, texts, training, training_text)


class Cleaning(unittest.TestCase):
    def test_placeholders_addresses_and_tags_leave_no_trace(self):
        self.assertEqual(cleaning.clean("See <b>%s</b> at https://example.org/x for $1 more"),
                         "See at for more")

    def test_accelerator_marks_are_taken_out_of_words(self):
        self.assertEqual(cleaning.clean("Sa&ve the file", "&"), "Save the file")
        self.assertEqual(cleaning.clean("ファイルを保存する(&S)", "&"), "ファイルを保存する")

    def test_plural_forms_leave_the_last_one(self):
        self.assertEqual(cleaning.clean("{n, plural, one {a page} other {many pages}}"),
                         "many pages")

    def test_wiki_links_leave_what_is_read(self):
        self.assertEqual(cleaning.clean("[[Help:A|the help]] says '''so'''", wiki=True),
                         "the help says so")

    def test_english_left_in_a_translation_is_no_running_text(self):
        english = "You should not use this file with the other one"
        self.assertTrue(cleaning.is_running_text(english, "en"))
        self.assertFalse(cleaning.is_running_text(english, "fr"))
        self.assertFalse(cleaning.is_running_text(english, "ru"))


class Fitting(unittest.TestCase):
    def samples(self, weights, count=4000):
        source, out = random.Random(1), []
        for _ in range(count):
            features = [1.0] + [source.uniform(0, 5) for _ in weights[1:]]
            out.append((features, source.random() < fitting.probability(weights, features)))
        return out

    def test_the_weights_that_made_the_answers_are_found(self):
        found = fitting.fit(self.samples([-1.0, 1.2, -0.5]), (1,))
        for weight, expected in zip(found, [-1.0, 1.2, -0.5]):
            self.assertAlmostEqual(weight, expected, delta=0.2)

    def test_a_margin_never_counts_against_an_answer(self):
        found = fitting.fit(self.samples([2.0, -0.7, 0.3]), (1,))
        self.assertEqual(found[1], 0)

    def test_of_few_wrong_answers_only_their_share_is_learnt(self):
        samples = [([1.0, k / 10], k > 1) for k in range(99)]
        found = fitting.fit(samples, (1,))
        self.assertEqual(found[1:], [0.0])
        self.assertAlmostEqual(fitting.probability(found, [1.0, 5.0]), 98 / 101)

    def test_the_error_is_the_distance_of_the_bins(self):
        self.assertAlmostEqual(fitting.calibration_error([(0.75, 1)] * 3 + [(0.75, 0)]), 0)
        self.assertAlmostEqual(fitting.calibration_error([(0.25, 1), (0.95, 1)]), 0.4)


class Imitation(unittest.TestCase):
    TEXTS = {"en": ["The ferry leaves at nine and is back by noon."] * 3,
             "ru": ["Паром уходит в девять и к полудню возвращается."] * 3,
             "ja": ["渡し船は九時に出て、昼までに戻ってくる。"] * 3}

    def documents(self, seed):
        imitator = imitation.Imitator(self.TEXTS, seed)
        return [imitator.make() for _ in range(120)]

    def test_the_same_seed_gives_the_same_documents(self):
        self.assertEqual(self.documents(3), self.documents(3))
        self.assertNotEqual(self.documents(3), self.documents(4))

    def test_nearly_all_can_be_read_as_they_are_labelled(self):
        made = [document for document in self.documents(5) if document]
        self.assertGreater(len(made), 60)
        unread = 0
        for data, charset, _ in made:
            try:
                decoder = codecs.getincrementaldecoder(charsets.codec_of(charset))()
                decoder.decode(data)
            except UnicodeDecodeError:
                unread += 1
        self.assertLess(unread, 5)


class Languages(unittest.TestCase):
    def test_tags_of_the_sources_are_understood(self):
        for tag, text in (("pt-BR", "pt_BR"), ("pt_PT", "pt"), ("sr-ec", "sr"), ("fil", "tl"),
                          ("zh-hant", "zh_Hant"), ("es_ES", "es"), ("nb_NO", "nb")):
            self.assertEqual(languages.text_name(tag), text)
        for tag in ("sr-el", "ca@valencia", "be-tarask", "tlh"):
            self.assertIsNone(languages.text_name(tag))


class Charsets(unittest.TestCase):
    def test_letters_that_a_charset_lacks_are_written_as_people_do(self):
        self.assertEqual(charsets.Encoder("ro", "ISO-8859-2").rewrite("și ț"), "şi ţ")
        self.assertEqual(charsets.Encoder("ro", "ISO-8859-16").rewrite("și ț"), "și ț")
        vietnamese = charsets.Encoder("vi", "windows-1258")
        self.assertEqual(vietnamese.encode(vietnamese.rewrite("ệ")), "ê\u0323".encode("cp1258"))

    def test_a_line_that_does_not_fit_is_refused(self):
        self.assertIsNone(charsets.Encoder("de", "ISO-8859-1").rewrite("Привет"))

    def test_every_charset_of_the_table_can_be_written(self):
        for model in models.read():
            encoder = charsets.Encoder(model.language, model.charset)
            self.assertTrue(encoder.encode(encoder.rewrite("plain")), model.name)


class Lines(unittest.TestCase):
    def test_a_line_is_in_all_charsets_or_in_none(self):
        written, dropped = training_text.common_lines(
            ["x", "für", "Ελλάδα"], "de", ["UTF-8", "ISO-8859-1"])
        self.assertEqual(len(written["UTF-8"]), 2)
        self.assertEqual(written["UTF-8"], written["ISO-8859-1"])
        self.assertEqual(dropped, 1)

    def test_sources_share_the_size_evenly(self):
        self.assertEqual(texts.shares({"a": 10, "b": 100, "c": 100}, 90),
                         {"a": 10, "b": 40, "c": 40})

    def test_spread_takes_from_the_whole_list(self):
        taken = texts.spread(["%02d" % i for i in range(100)], 20)
        self.assertEqual(len(taken), 10)
        self.assertGreater(int(taken[-1]), 80)


class Table(unittest.TestCase):
    def test_models_and_sets_fit_one_group(self):
        table = models.read()
        self.assertLessEqual(len(table), 199)
        self.assertLessEqual(len(table) + len(models.sets(table)), 255)

    def test_a_set_names_its_models_and_no_others(self):
        # A member of a set stands for the first model whose name begins with it.
        names = [model.name for model in models.read()]
        for name in names:
            self.assertEqual(next(n for n in names if n.startswith(name)), name)


def model(byte_cost, costs):
    made = training.TrainedModel.__new__(training.TrainedModel)
    made.head = ["V25aDCX ", "2.0000"] + [("%7.4f " % byte_cost) * 8] * 32 + ["1.0000 2.0000"]
    made.costs = costs
    return made


class Costs(unittest.TestCase):
    def test_models_of_a_set_agree_on_ascii(self):
        one = model(9, {"616263": 1.0, "61c3a9": 2.0})
        other = model(9, {"616263": 1.5, "646566": 3.0})
        training.share_ascii([one, other])
        self.assertEqual(one.costs, {"616263": 1.0, "646566": 3.0, "61c3a9": 2.0})
        self.assertEqual(other.costs, {"616263": 1.0, "646566": 3.0})

    def test_signs_that_training_replaced_are_not_dear(self):
        one = model(-1, {})
        one.price_unseen("windows-1252")
        costs = one.byte_costs()
        self.assertEqual(costs[0xA9], training.SIGN)  # a copyright sign
        self.assertEqual(costs[0xE9], -1)             # a letter
        self.assertEqual(costs[0x81], -1)             # nothing
        self.assertEqual(costs[0x41], -1)

    def test_utf8_in_unusual_order_is_dear(self):
        one = model(9, {})
        one.price_unseen("UTF-8")
        self.assertEqual(one.byte_costs()[0xA9], 9 + training.UNUSUAL)
        self.assertEqual(one.byte_costs()[0x41], 9)

    def test_values_are_counted_for_each_byte(self):
        counts = {"616161": (4, 2)}
        self.assertEqual(grouping.values_per_byte(counts, b"AAAAAA1"), [16 / 6, 8 / 6, 2 / 6])


if __name__ == "__main__":
    unittest.main()
