"""What a user does, from the outside: sends keys and clicks, then checks the window and the disk."""

import os
import signal
import sys
import unittest

import accessible
from desk import DesktopTest, WaylandTest, wait_for

NPM = "npm önbelleği"
MODELS = "huggingface önbelleği"
GRADLE = "Gradle önbelleği"
BUILD = "oyun-motoru · target"
MODULES = "web-sitesi · node_modules"
BUTTONS = "push button|button|button menu|push button menu"


class Scanned(DesktopTest):
    """Waits until the scan's result is shown."""

    def setUp(self):
        super().setUp()
        self.start()
        self.press("ctrl+r")
        self.see(BUTTONS, "Yeniden oluşur, ")

    def open_level(self, title):
        """Uses the mouse, in the sidebar."""
        self.click(self.see("list item", title + ", "))
        self.see("list", title)

    def select(self, title):
        """Uses the mouse, in the list."""
        row = self.see("list item", title)
        self.click(row)
        wait_for(f"{row!r} is selected", lambda: "selected" in row.states)
        self.see(BUTTONS, "Çöp Kutusuna Taşı")
        return row

    def relabel_by_keyboard(self, level):
        self.tab_to(BUTTONS, "Etiketi Değiştir")
        self.press("space")
        self.see("menu item", level)
        for _ in range(8):
            chosen = self.focused()
            if chosen and chosen.role == "menu item" and chosen.name == level:
                break
            self.press("Down")
            wait_for("the next line of the menu", lambda: self.focused() != chosen)
        else:
            self.fail(f"expected to come to the menu's line {level!r} by the Down key")
        self.press("Return")
        self.see_no("menu item", level)

    def check_label(self, title, folder):
        self.open_level("Yeniden oluşur")
        self.select(title)
        self.relabel_by_keyboard("Dokunma")
        self.see_no("list item", title)
        path = str(self.home / folder)
        verdict = wait_for("the label is in the file", lambda: self.verdicts().get(path))["verdict"]
        self.assertEqual((verdict["level"], verdict["source"]), ("keep", "user"))
        self.open_level("Dokunma")
        self.see("list item", title)


class Cleaning(Scanned):
    def test_a_label_given_by_keyboard_is_in_the_file(self):
        self.check_label(MODELS, ".cache/huggingface")

    def test_the_question_cancels_by_return_and_escape_and_moves_by_a_click(self):
        npm = self.home / ".npm"
        self.open_level("Yeniden oluşur")
        self.select(NPM)
        self.relabel_by_keyboard("Dokunma")
        self.open_level("Dokunma")
        row = self.select(NPM)
        for key in ("Return", "Escape"):
            self.press("Delete")
            question = self.see("dialog", NPM)
            self.assertEqual(wait_for("the dialog has the keyboard", self.focused).name, "Vazgeç")
            self.press(key)
            self.see_no("dialog", NPM)
            self.assertTrue(npm.is_dir(), f"{npm} stays where it is after {key} on {question!r}")
            self.assertFalse(self.newly_trashed(), f"nothing goes to the Trash after {key}")
            self.assertIn("selected", row.states, f"{row!r} stays selected after {key}")
        self.press("Delete")
        self.see("dialog", NPM)
        # The last one is on top: the one in the dialog.
        self.click(wait_for("the button that confirms", self.confirm_button))
        self.see_no("dialog", NPM)
        self.see_no("list item", NPM)
        wait_for(f"{npm} is gone", lambda: not npm.exists())
        self.assertEqual(self.newly_trashed(), {".npm"})
        self.assertTrue((self.data / "Trash/files/.npm/_cacache").is_dir(), "the item is in the Trash, whole")
        self.assertIn(f"Path={npm}\n", self.trash_info(".npm").read_text())
        self.see_no_alert()

    def see_no_alert(self):
        alert = self.find("alert message", "")
        self.assertIsNone(alert, f"nothing has failed; told: {alert and alert.description}")

    def test_what_cannot_be_moved_is_told_and_stays(self):
        film = self.home / "Movies/Tatil 2024.mov"
        self.open_level("Dokunma")
        self.select(film.name)
        self.press("Delete")
        self.see("dialog", film.name)
        button = wait_for("the button that confirms", lambda: self.confirm_button(film.name))
        film.rename(film.with_name("başka yerde"))
        self.addCleanup(film.with_name("başka yerde").rename, film)
        self.click(button)
        alert = self.see("alert message", film.name)
        self.assertIn(film.name, alert.description, "says what is not there")
        self.press("Return")
        self.see_no("alert message", film.name)
        self.assertFalse(self.newly_trashed(), "nothing goes to the Trash")

    def confirm_button(self, title=NPM):
        """The open dialog's confirm button, once it is enabled."""
        dialog = self.find("dialog", title)
        for node in dialog.below() if dialog else []:
            if node.role in BUTTONS.split("|") and node.name == "Çöp Kutusuna Taşı" and "enabled" in node.states:
                return node
        return None

    def test_the_delete_key_moves_what_needs_no_question(self):
        gradle = self.home / ".gradle/caches"
        self.open_level("Yeniden oluşur")
        self.select(GRADLE)
        self.press("Delete")
        self.see_no("list item", GRADLE)
        wait_for(f"{gradle} is gone", lambda: not gradle.exists())
        self.assertEqual(self.newly_trashed(), {"caches"})
        self.assertTrue((self.data / "Trash/files/caches/modules-2").is_dir(), "the item is in the Trash, whole")
        self.assertIn(f"Path={gradle}\n", self.trash_info("caches").read_text())
        self.see_no_alert()

    def test_a_triple_click_cleans_one_item_and_not_the_next(self):
        self.open_level("Yeniden oluşur")
        self.select(BUILD)
        self.click(self.see(BUTTONS, "Çöp Kutusuna Taşı"), times=3)
        self.see_no("list item", BUILD)
        wait_for("the item is in the Trash", lambda: self.trash_info("target").exists())
        self.assertEqual(self.newly_trashed(), {"target"})
        self.see_no_alert()


class CleaningUnderWayland(Scanned, WaylandTest):
    def test_a_label_given_by_keyboard_is_in_the_file(self):
        self.check_label(MODULES, "Projeler/web-sitesi/node_modules")


class Starting(DesktopTest):
    def test_the_window_belongs_to_the_desktop_entry(self):
        self.start()
        self.assertIn(self.entry("StartupWMClass"), self.window_classes())

    def test_a_task_bar_names_the_program_beside_the_page(self):
        self.start("--level=keep")
        self.assertEqual(self.window_title(), "Dokunma — Ulvak")
        self.press("Home")
        wait_for("the summary's title, which is the program's", lambda: self.window_title() == "Ulvak")


class Ending(DesktopTest):
    def close_by_window_manager(self, when):
        self.press("alt+F4")
        self.wait_for_end(2, when)

    def test_closing_ends_the_program(self):
        self.start()
        self.close_by_window_manager("nothing was begun")

    def test_closing_with_results_ends_the_program(self):
        self.start("--autoscan", "--level=regenerable", "--select-first")
        self.see(BUTTONS, "Çöp Kutusuna Taşı")
        self.close_by_window_manager("results are shown")

    def test_closing_during_a_scan_ends_the_program(self):
        self.start()
        self.hold_disk()
        self.press("ctrl+r")
        self.see(BUTTONS, "Durdur")
        self.see("heading", "Taranıyor")
        self.close_by_window_manager("a scan runs")

    def test_closing_while_a_model_server_is_silent_ends_the_program(self):
        self.server.be_silent()
        self.start("--autoscan")
        self.see(BUTTONS, "Yeniden oluşur, ")
        self.close_by_window_manager("a server is asked that says nothing")

    def test_closing_while_a_question_is_open_moves_nothing(self):
        self.start("--autoscan", "--level=keep", "--select-first")
        self.click(self.see(BUTTONS, "Çöp Kutusuna Taşı"))
        self.see("dialog", "Tatil 2024.mov")
        self.close_by_window_manager("a question is open")
        self.assertTrue((self.home / "Movies/Tatil 2024.mov").is_file(), "what was asked about stays")
        self.assertFalse(self.newly_trashed(), "nothing goes to the Trash")

    def test_a_signal_ends_the_program(self):
        self.start()
        self.hold_disk()
        self.press("ctrl+r")
        self.see("heading", "Taranıyor")
        self.process.terminate()
        self.wait_for_end(2, "it was asked to by a signal during a scan", -signal.SIGTERM)


class Telling(DesktopTest):
    """What a screen reader is told, and where the Tab key leads."""

    def check_controls(self, page):
        """Every control has a name and reports itself as usable."""
        controls = [node for node in self.shown() if node.role in accessible.CONTROLS]
        self.assertGreater(len(controls), 7, f"controls on the page {page}")
        for node in controls:
            self.assertTrue(node.name.strip(), f"{page}: a {node.role} at {node.place} has a name")
            self.assertIn("focusable", node.states, f"{page}: {node!r} can have the keyboard")

    def stops(self):
        """What Tab can reach. Rows are reached with their list's arrow keys; and Qt reports every text as
        focusable."""
        reached_otherwise = {"list item", "menu item", "label"}
        return {
            node for node in self.shown()
            if {"focusable", "enabled"} <= node.states and node.role not in reached_otherwise
        }

    def check_round(self, page):
        """Tab reaches everything that reports itself focusable, and returns to where it started."""
        start = wait_for("something has the keyboard", self.focused_stop)
        expected, reached = self.stops(), [start]
        while len(reached) < 60:
            before = reached[-1]
            self.press("Tab")
            after = wait_for(f"{page}: the focus leaves {before!r}",
                             lambda: (node := self.focused_stop()) and node != before and node)
            expected |= self.stops()  # scrolled into view
            if after == start:
                break
            self.assertNotIn(after, reached, f"{page}: Tab goes round and not in a smaller circle")
            reached.append(after)
        else:
            self.fail(f"{page}: expected Tab to lead back to {start!r} within 60 steps")
        missed = expected - set(reached)
        self.assertFalse(missed, f"{page}: expected Tab to reach these; it reached {reached}")

    def focused_stop(self):
        """The focused control; the list rather than its row."""
        return next((n for n in self.shown() if "focused" in n.states and n.role != "list item"), None)

    def selected(self):
        return [node.name.split(", ")[0] for node in self.shown() if "selected" in node.states]

    def check(self, page):
        self.check_controls(page)
        self.check_round(page)

    def test_every_page(self):
        self.start()
        self.see(BUTTONS, "Taramayı Başlat")
        self.assertEqual(self.selected(), ["Özet"])
        self.check("welcome")
        self.press("ctrl+r")
        self.see(BUTTONS, "Hepsini Analiz Et")
        self.check("results")
        self.click(self.see("list item", "Bilinmiyor, "))
        self.see("list", "Bilinmiyor")
        self.check("list")
        rows = [n for n in self.shown() if n.role == "list item" and "~/" in n.name]
        self.assertGreater(len(rows), 2)
        self.click(rows[0])
        self.see("text|entry", "Not")
        wait_for("sidebar's row and the list's are selected", lambda: len(self.selected()) == 2)
        self.assertIn("focused", rows[0].states, "the row that was clicked has the keyboard")
        self.check("one finding")
        self.click(rows[0])
        self.press("shift+Down")
        self.see("heading", "2 öğe seçili")
        wait_for("two rows are selected", lambda: {"selected"} <= rows[0].states & rows[1].states)
        self.check("two findings")
        self.press("ctrl+q")
        self.wait_for_end(2, "Ctrl+Q was pressed")

    def test_while_scanning(self):
        self.start()
        self.hold_disk()
        self.press("ctrl+r")
        self.see("heading", "Taranıyor")
        self.check("scanning")

    def test_a_question_keeps_the_keyboard(self):
        self.start("--autoscan", "--level=regenerable", "--select-first")
        self.click(self.see(BUTTONS, "Kalıcı Sil"))
        dialog = self.see("dialog", "")
        wait_for("cancelling has the keyboard", lambda: (n := self.focused()) and n.name == "Vazgeç")
        inside = {n for n in dialog.below() if n.role in BUTTONS.split("|")}
        self.assertEqual(len(inside), 2)
        for _ in range(4):
            before = self.focused()
            self.press("Tab")
            wait_for("the focus goes on in the dialog", lambda: (n := self.focused()) and n != before and n in inside)


if __name__ == "__main__":
    if "ULVAK_DESKTOP_TEST" not in os.environ:
        sys.exit("desktop_test.py: is run by scripts/test-desktop")
    unittest.main(verbosity=2)
