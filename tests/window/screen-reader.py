#!/usr/bin/python3
"""What a screen reader is told of the window: screen-reader.py NORLIS-DOCUMENTS NORLIS-CLOUD SAMPLES

Works in the window by keys and reads it through AT-SPI, as screen readers do, on a desktop of its own: a display, a window manager,
without which no window is active, and a session bus. It is Debian's Python that has the bindings.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds

# Keys by their symbols in X11, and those that are held by their codes.
KEYS = {"F1": 0xFFBE, "Delete": 0xFFFF, "Escape": 0xFF1B, "Tab": 0xFF09, "Space": 0x20,
        "Right": 0xFF53, "Down": 0xFF54, "Home": 0xFF50, "End": 0xFF57}  # fmt: skip
HELD = {"Ctrl": 37, "Shift": 50}

# What there is to be used has to have a name.
USED = {"push button", "toggle button", "check box", "radio button", "combo box", "text", "list", "menu item", "slider"}

CONFLICT = "“scanned-letter.pdf” was changed both here and in the cloud."


def start_on_own_desktop(scratch):
    """This program again, where nothing of the user's is."""
    read, write = os.pipe()
    # Without -noreset the display forgets the address of the accessibility bus when its first client has gone.
    display = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", "1366x768x24", "-nolisten", "tcp", "-noreset"],
        pass_fds=[write],
        stderr=subprocess.DEVNULL,
    )
    os.close(write)
    try:
        with os.fdopen(read) as number:
            environment = {**os.environ, "DISPLAY": f":{number.readline().strip()}"}
        environment.update(HOME=scratch, XDG_RUNTIME_DIR=scratch, NORLIS_SCRATCH=scratch, LC_ALL="C.UTF-8")
        environment.update(QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        # What the display's own parts keep is not the window's.
        environment["ASAN_OPTIONS"] = f"{environment.get('ASAN_OPTIONS', '')}:detect_leaks=0"
        for name in ("AT_SPI_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS", "WAYLAND_DISPLAY", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"):
            environment.pop(name, None)
        return subprocess.run(["dbus-run-session", "--", *sys.orig_argv], env=environment).returncode
    finally:
        display.terminate()
        display.wait()


def start_window_manager():
    signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGUSR1})
    manager = subprocess.Popen(
        ["openbox", "--startup", f"sh -c 'kill -USR1 {os.getpid()}'"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
    )
    if not signal.sigtimedwait({signal.SIGUSR1}, PATIENCE):
        sys.exit("There is no window manager")
    signal.pthread_sigmask(signal.SIG_UNBLOCK, {signal.SIGUSR1})
    return manager


def parts(of):
    """It and all that is in it."""
    yield of
    for index in range(of.get_child_count()):
        child = of.get_child_at_index(index)
        if child:
            yield from parts(child)


def is_(part, state):
    return part.get_state_set().contains(getattr(Atspi.StateType, state))


def press(*keys):
    """Keys by name, or letters, as in "Ctrl+f"."""
    for key in keys:
        *held, pressed = key.split("+")
        for each in held:
            Atspi.generate_keyboard_event(HELD[each], None, Atspi.KeySynthType.PRESS)
        Atspi.generate_keyboard_event(KEYS.get(pressed) or ord(pressed), None, Atspi.KeySynthType.SYM)
        for each in held:
            Atspi.generate_keyboard_event(HELD[each], None, Atspi.KeySynthType.RELEASE)


class Reader:
    """Hears what a screen reader would say."""

    def __init__(self):
        self.focus = ""  # what was last said to have the keyboard
        self.aloud = []  # notifications
        self.changed = False
        self.listener = Atspi.EventListener.new(self.hear)
        for kind in ("object:state-changed", "object:children-changed", "object:property-change", "window"):
            self.listener.register(kind)

    def hear(self, event):
        self.changed = True
        if not event.detail1:
            return
        try:
            if event.type == "object:state-changed:focused":
                self.focus = event.source.get_name()
            elif event.type == "object:state-changed:showing" and event.source.get_role_name() == "notification":
                self.aloud.append(event.source.get_name())
        except GLib.Error:
            pass  # it has gone

    def wait_for(self, what, look):
        """What look gives as soon as that is anything."""
        end = time.monotonic() + PATIENCE
        main = GLib.MainContext.default()
        tick = GLib.timeout_add(1000, lambda: True)  # not all that changes is told
        try:
            while time.monotonic() < end:
                try:
                    found = look()
                except GLib.Error:  # a part has gone while it was read
                    found = None
                if found:
                    return found
                main.iteration(True)
                while main.pending():
                    main.iteration(False)
        finally:
            GLib.source_remove(tick)
        sys.exit(f"There is no {what}. The keyboard is at “{self.focus}”; what was read aloud is {self.aloud}")

    def application(self):
        desktop = Atspi.get_desktop(0)
        running = [desktop.get_child_at_index(index) for index in range(desktop.get_child_count())]
        return next((each for each in running if each and each.get_name() == "norlis-documents" and each.get_child_count()), None)

    def waits_for_window(self):
        self.program = self.wait_for("application", self.application)

    def shown(self, *roles):
        return [part for part in parts(self.program) if part.get_role_name() in roles and is_(part, "SHOWING")]

    def finds(self, role, begin):
        """A part of that role on the screen whose name begins so."""
        is_it = lambda part: part.get_name().startswith(begin)
        return self.wait_for(f"{role} “{begin}”", lambda: next(filter(is_it, self.shown(role)), None))

    def loses(self, role):
        self.wait_for(f"end of the {role}", lambda: not self.shown(role))

    def is_at(self, begin):
        self.wait_for(f"word that the keyboard is at “{begin}”", lambda: self.focus.startswith(begin))

    def hears(self, text):
        """This, and nothing else."""
        self.wait_for(f"word of “{text}”", lambda: text in self.aloud)
        expect(self.aloud, [text])
        self.aloud.clear()

    def names_of(self, role):
        return [part.get_name() for part in self.shown(role)]

    def checked(self):
        return [part.get_name() for part in self.shown("radio button") if is_(part, "CHECKED")]


def expect(found, wanted):
    if found != wanted:
        sys.exit(f"Expected {wanted}, found {found}")


def check_list(reader):
    documents = reader.finds("list", "Documents")
    reader.wait_for("document", lambda: documents.get_child_count() == 4)
    names = [documents.get_child_at_index(index).get_name() for index in range(4)]
    expect([name.split(", ")[:2] for name in names], [
        ["ferry-ticket.pdf", "Only in the cloud"],
        ["garden-year.pdf", "Only in the cloud"],
        ["Résumé – Zoë.pdf", "Only in the cloud"],
        ["scanned-letter.pdf", "Changed on both sides"],
    ])  # fmt: skip
    reader.hears(CONFLICT)  # and there are its buttons too
    used = [part for part in reader.shown(*USED) if part.get_parent().get_role_name() != "combo box"]
    expect([part.get_role_name() for part in used if not part.get_name()], [])
    expect(reader.finds("combo box", "Name, A to Z").get_description(), "Sort order")


def check_choices(reader):
    reader.wait_for("choice of all thumbnails", lambda: reader.checked() == ["Thumbnails", "All 4"])
    expect(reader.names_of("radio button"), ["Thumbnails", "List", "All 4", "Not Here 3", "Changed 1", "Conflicts 1"])
    expect(reader.names_of("table column header"), [])
    press("Ctrl+2")
    reader.wait_for("list", lambda: reader.checked() == ["List", "All 4"])
    expect(reader.names_of("table column header"), ["Name", "Folder", "State", "Size", "Modified"])
    name = reader.finds("table column header", "Name")
    expect(name.get_description(), "Sorted ascending")
    name.do_action(0)
    reader.wait_for("order from Z to A", lambda: reader.finds("list", "Documents").get_child_at_index(3).get_name().startswith("ferry"))
    reader.finds("table column header", "Name").do_action(0)
    press("Ctrl+1")
    reader.wait_for("end of the columns", lambda: reader.checked() == ["Thumbnails", "All 4"])


def check_focus(reader):
    press("Home")
    reader.is_at("ferry-ticket.pdf, ")
    press("Right")
    reader.is_at("garden-year.pdf, ")
    press("Ctrl+f")
    reader.is_at("Search by name")
    press("Down")  # to the documents, where garden-year.pdf is selected still
    reader.is_at("garden-year.pdf, ")


def check_quick_look(reader):
    press("Space")
    reader.is_at("Quick look: garden-year.pdf, Only in the cloud")
    expect(reader.names_of("dialog"), ["Quick look: garden-year.pdf, Only in the cloud"])
    reader.hears("Page 1")
    press("Right")
    reader.finds("dialog", "Quick look: Résumé – Zoë.pdf, ")
    press("Escape")
    reader.is_at("Résumé – Zoë.pdf, ")


def check_removal(reader):
    press("Delete")
    reader.hears("“Résumé – Zoë.pdf” was removed.")
    reader.is_at("scanned-letter.pdf, ")
    press("Tab")
    reader.is_at("Undo")
    press("Tab")
    reader.is_at("1 of 2. ")
    press("Shift+Tab")
    reader.is_at("Undo")
    press("Space")
    reader.is_at("Résumé – Zoë.pdf, ")
    reader.hears(CONFLICT)  # which has waited behind the other one
    press("Delete")
    reader.hears("“Résumé – Zoë.pdf” was removed.")
    reader.is_at("scanned-letter.pdf, ")
    press("Home")
    reader.is_at("ferry-ticket.pdf, ")
    press("Delete")  # another message in the place of the one that is there
    reader.hears("“ferry-ticket.pdf” was removed.")
    press("Ctrl+z")
    reader.is_at("ferry-ticket.pdf, ")


def check_dialogs(reader):
    press("End")
    reader.is_at("scanned-letter.pdf, ")
    press("Ctrl+s")
    for answer in ("Keep Both", "Use Mine", "Use the Cloud’s", "Cancel", "Keep Both"):
        reader.is_at(answer)
        press("Tab")
    question = reader.finds("alert", "“scanned-letter.pdf” was changed both here and in the cloud.")
    expect(question.get_description().startswith("Here: 46.7 KiB, "), True)
    press("Escape")
    reader.is_at("scanned-letter.pdf, ")
    press("F1")
    reader.finds("dialog", "Keyboard Shortcuts")
    press("Escape")
    reader.loses("dialog")
    reader.is_at("scanned-letter.pdf, ")


def make_conflict(terminal_program, cloud, data, here):
    """The last document is changed on both sides."""
    local = here / "scanned-letter.pdf"
    subprocess.run([terminal_program, "download", "--data", data, "--to", here, "scanned-letter.pdf"], check=True, stdout=subprocess.DEVNULL)
    local.write_bytes(local.read_bytes() + b"\n")
    (cloud / local.name).write_bytes((cloud / "garden-year.pdf").read_bytes())


def main():
    window_program, terminal_program, samples = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    scratch = pathlib.Path(os.environ["NORLIS_SCRATCH"])
    cloud, data, here = scratch / "cloud", scratch / "data", scratch / "here"
    here.mkdir()
    shutil.copytree(samples, cloud, ignore=shutil.ignore_patterns("sources", "*.md"))
    subprocess.run([terminal_program, "login", "--data", data, "--service", cloud], check=True, stdout=subprocess.DEVNULL)
    make_conflict(terminal_program, cloud, data, here)
    reader = Reader()  # before there is a window: somebody has to be there to whom it makes itself known
    manager = start_window_manager()
    window = subprocess.Popen([window_program, "--data", data])
    try:
        reader.waits_for_window()
        for check in (check_list, check_choices, check_focus, check_quick_look, check_removal, check_dialogs):
            check(reader)
    finally:
        for process in (window, manager):
            process.terminate()
            process.wait()
    expect(window.returncode, 0)


if __name__ == "__main__":
    if "NORLIS_SCRATCH" not in os.environ:
        with tempfile.TemporaryDirectory() as folder:
            sys.exit(start_on_own_desktop(folder))
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib

    main()
