import ctypes
import threading
from ctypes import byref

from support import Case, declared, run

import orv2_geo
from orv2_geo import DoubleArray, LongArray, Ref, RunFailure, ShortArray, StringArray

_show_form = declared("show_form", ctypes.POINTER(ctypes.c_char_p))
_error_box = declared("error_box", ctypes.c_int32, ctypes.c_char_p)
_yield = declared("yield")


def show_form():
    """Shows the sample form; the names of the routines that ran."""
    events = ctypes.c_char_p()
    run(_show_form, byref(events))
    return events.value.decode().split()


def show_box(which, text):
    run(_error_box, which, text.encode())


class Person:
    """A user interface on which a function acts on the forms."""

    def __init__(self, act=lambda form: None):
        self.act = act
        self.boxes = []

    def error_box(self, text, flags, caption):
        self.boxes.append((text, flags, caption))

    def show_modal(self, form):
        self.act(form)


class InterfaceCase(Case):
    def tearDown(self):
        orv2_geo.set_user_interface(None)

    def shown(self, act):
        """The routines that ran while `act` used the form."""
        self.person = Person(act)
        orv2_geo.set_user_interface(self.person)
        return show_form()


class Boxes(InterfaceCase):
    def test_the_forms_of_the_box(self):
        person = Person()
        orv2_geo.set_user_interface(person)
        for which in range(4):
            show_box(which, "Niño ")
        self.assertEqual(person.boxes, [
            ("Niño ", 0, None), ("Niño ", 16, None), ("Niño ", 16, "Orv2_Geo.Testing"),
            ("Niño  11:División por cero", 16, "Orv2_Geo.Testing")])

    def test_a_failure_of_the_interface_reaches_the_caller(self):
        class Broken(Person):
            def error_box(self, *_):
                raise RunFailure(1000, "sin pantalla", "Pantalla")

        orv2_geo.set_user_interface(Broken())
        with self.fails(1000, "Pantalla"):
            show_box(0, "x")

    def test_any_other_exception_is_440(self):
        orv2_geo.set_user_interface(object())
        with self.fails(440) as caught:
            show_box(0, "x")
        self.assertIsInstance(caught.exception.__cause__, AttributeError)

    def test_an_interrupt_is_not_lost(self):
        class Interrupted(Person):
            def error_box(self, *_):
                raise KeyboardInterrupt

        orv2_geo.set_user_interface(Interrupted())
        with self.assertRaises(KeyboardInterrupt):
            show_box(3, "x")

    def test_events_are_handled_where_the_interface_can(self):
        class Busy(Person):
            handled = 0

            def handle_events(self):
                self.handled += 1

        busy = Busy()
        orv2_geo.set_user_interface(busy)
        run(_yield)
        run(_yield)
        self.assertEqual(busy.handled, 2)
        self.assertIs(orv2_geo.set_user_interface(Person()), busy)
        run(_yield)
        self.assertEqual(busy.handled, 2)

    def test_the_interface_may_change_in_the_middle(self):
        class Leaving(Person):
            def error_box(self, *arguments):
                super().error_box(*arguments)
                orv2_geo.set_user_interface(after)

        leaving, after = Leaving(), Person()
        orv2_geo.set_user_interface(leaving)
        show_box(0, "a")
        show_box(0, "b")
        self.assertEqual([box[0] for box in leaving.boxes + after.boxes], ["a", "b"])

    def test_each_thread_has_its_own(self):
        mine, other = Person(), Person()
        orv2_geo.set_user_interface(mine)

        def work():
            orv2_geo.set_user_interface(other)
            show_box(0, "otro")
            orv2_geo.set_user_interface(None)

        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        show_box(0, "mío")
        self.assertEqual((mine.boxes, other.boxes), ([("mío", 0, None)], [("otro", 0, None)]))

    def test_without_one_forms_are_cancelled(self):
        self.assertEqual(show_form(), ["Cancelar"])


class Dialogs(InterfaceCase):
    """The library's own dialogs, for a driver that draws them: every fixed property."""

    def on_dialog(self, member, arguments, act):
        orv2_geo.set_user_interface(Person(act))
        getattr(orv2_geo.create("Orv2_Geo.cgeo_Matrices"), member)(*arguments)

    def window(self, form):
        return (form.caption, form.width, form.height, form.start, form.left, form.top,
                form.tool_window, form.resizable, form.minimise_box, form.maximise_box,
                form.in_task_bar)

    def test_the_repeated_points_dialog(self):
        def act(form):
            self.assertEqual(self.window(form),
                             ("Quitar puntos repetidos:", 2865, 3000, "centre of owner", 0, 0, True,
                              False, False, False, False))
            looks = {name: (control.text_alignment, control.background, control.sizes_itself)
                     for name, control in form.controls.items()}
            fitted = {"Label1": "left", "Label2": "right", "labPuntos": "left", "lblPtos": "left"}
            for name, alignment in fitted.items():
                self.assertEqual(looks.pop(name), (alignment, None, True), name)
            self.assertEqual(looks.pop("lblEstudio"), ("centre", 0x00ffff, True))
            self.assertEqual(set(looks.values()), {("left", None, False)})
            form.press_escape()

        texts, layers = StringArray([""] * 3), ShortArray([0] * 3)
        self.on_dialog("Quita_Pts_Repetidos",
                       (2, *(DoubleArray([0, 1, 2]) for _ in range(3)), texts, texts, layers,
                        LongArray(), False), act)

    def test_the_extremes_dialog(self):
        def act(form):
            self.assertEqual(self.window(form),
                             ("Maximos y Minimos:", 7935, 2175, "centre of screen", 45, 210, True,
                              False, False, False, False))
            grid = form.controls["msf_MaxMin"]
            self.assertEqual((grid.rows, grid.cols, grid.fixed_rows, grid.fixed_cols), (4, 4, 1, 1))
            self.assertEqual(grid.font, ("Courier New", 8.25, 400))
            self.assertEqual([grid.alignment(col) for col in range(4)], [1, 7, 7, 7])
            form.press_escape()

        numbers = [Ref(0.0) for _ in range(6)]
        self.on_dialog("MaxMin_3Matriz",
                       (*(DoubleArray([0, 1, 2]) for _ in range(3)), *numbers, True), act)

    def test_only_a_grid_has_a_font(self):
        def act(form):
            with self.fails(438):
                form.controls["Aceptar"].font
            form.close()

        self.shown(act)


class OwnerWindow(Case):
    def test_any_number_of_64_bits_may_be_named(self):
        for number in (0, 1, 0x2a00007, 2**64 - 1, 0):
            orv2_geo.set_owner_window(number)
        for number in (-1, 2**64):
            with self.fails(6):
                orv2_geo.set_owner_window(number)
        for number in (1.5, "1", None):
            with self.assertRaises(TypeError):
                orv2_geo.set_owner_window(number)


class Forms(InterfaceCase):
    def test_a_form_describes_itself(self):
        def act(form):
            seen.append((form.name, form.caption, form.width, form.height, form.open,
                         len(form.controls)))
            form.close()
            seen.append(form.open)

        seen = []
        self.assertEqual(self.shown(act), [])
        self.assertEqual(seen, [("frmMuestra", "Muestra", 4200, 5600, True, 15), False])

    def test_controls_by_name(self):
        def act(form):
            self.assertEqual(list(form.controls)[:4], ["Marco", "Opt3D(0)", "Opt3D(1)", "Etiqueta"])
            self.assertEqual(form.controls["OPT3d(1)"].name, "Opt3D(1)")
            self.assertIn("marco", form.controls)
            for name in ("nada", "Opt3D", 1):
                self.assertNotIn(name, form.controls)
                with self.assertRaises(KeyError):
                    form.controls[name]
            form.close()

        self.shown(act)

    def test_controls_show_how_they_are(self):
        fields = ("kind", "left", "top", "width", "height", "tab_index", "text", "container",
                  "visible", "enabled", "value", "min", "max", "is_default", "is_cancel")
        wanted = {
            "Marco": ("frame", 120, 120, 3000, 1200, 0, "Dimensión", "", True, True, 0.0, 0.0,
                      100.0, False, False),
            "Opt3D(0)": ("option_button", 100, 300, 2400, 255, 1, "2D", "Marco", True, True, -1.0,
                         0.0, 100.0, False, False),
            "Etiqueta": ("label", 120, 1440, 900, 255, 3, "Precisión", "", True, True, 0.0, 0.0,
                         100.0, False, False),
            "Precision": ("text_box", 1200, 1440, 1200, 285, 4, "0.001", "", True, True, 0.0, 0.0,
                          100.0, False, False),
            "Avisar": ("check_box", 120, 1800, 1200, 255, 5, "Avisar", "", True, True, 0.0, 0.0,
                       100.0, False, False),
            "Aceptar": ("button", 120, 4000, 1200, 375, 6, "Aceptar", "", True, True, 0.0, 0.0,
                        100.0, True, False),
            "Cancelar": ("button", 1500, 4000, 1200, 375, 7, "Cancelar", "", True, True, 0.0, 0.0,
                         100.0, False, True),
            "Oculto": ("button", 2880, 4000, 1200, 375, 8, "Oculto", "", False, True, 0.0, 0.0,
                       100.0, False, False),
            "Inactivo": ("button", 2880, 4400, 1200, 375, 9, "Inactivo", "", True, False, 0.0, 0.0,
                         100.0, False, False),
            "Progreso": ("progress_bar", 120, 5200, 3000, 255, 13, "", "", True, True, 0.0, 0.0,
                         100.0, False, False),
            "Tabla": ("grid", 120, 2160, 3000, 1700, 14, "", "", True, True, 0.0, 0.0, 100.0,
                      False, False),
        }

        def act(form):
            for name, values in wanted.items():
                control = form.controls[name]
                seen[name] = tuple(getattr(control, field) for field in fields)
            seen["types"] = type(control.visible), type(control.value), repr(control)
            form.close()

        seen = {}
        self.shown(act)
        self.assertEqual(seen.pop("types"), (bool, float, "<grid Tabla>"))
        self.assertEqual(seen, wanted)

    def test_a_grid_shows_its_cells(self):
        def act(form):
            grid = form.controls["Tabla"]
            seen.append((grid.format_string, grid.rows, grid.cols, grid.fixed_rows,
                         grid.fixed_cols))
            seen.append([[grid.cell(row, col) for col in range(2)] for row in range(3)])
            seen.append([grid.alignment(col) for col in range(2)])
            for place in ((3, 0), (0, 2), (-1, 0), (0, -1)):
                with self.fails(9):
                    grid.cell(*place)
            with self.fails(9):
                grid.alignment(2)
            with self.fails(6):
                grid.cell(2**32, 0)
            label = form.controls["Etiqueta"]
            for use in (lambda: label.rows, lambda: label.cell(0, 0), lambda: label.alignment(0)):
                with self.fails(438):
                    use()
            form.close()

        seen = []
        self.shown(act)
        self.assertEqual(seen, [("Punto|Cota", 3, 2, 1, 0),
                                [["Punto", "Cota"], ["P1", "12,5"], ["Niño", ""]], [1, 7]])

    def test_the_users_actions(self):
        for action, wanted in (
                (lambda form: form.click("aceptar"), ["Aceptar"]),
                (lambda form: form.press_enter(), ["Aceptar"]),
                (lambda form: form.press_escape(), ["Cancelar"]),
                (lambda form: form.close(), []),
                (lambda form: None, ["Cancelar"]),
                (lambda form: form.click("Oculto"), ["Cancelar"]),
                (lambda form: form.click("Inactivo"), ["Cancelar"]),
                (lambda form: form.select("Opt3D(1)"), ["Opt3D(1)", "Cancelar"]),
                (lambda form: (form.close(), form.click("Aceptar")), [])):
            self.assertEqual(self.shown(action), wanted)

    def test_enter_presses_the_button_in_focus_where_there_is_no_default_to_press(self):
        def act(form):
            seen.append(form.focus)
            form.set_focus("progreso")  # takes none
            form.set_focus("cancelar")
            seen.append(form.focus)
            with self.fails(438):
                form.set_focus("nada")
            with self.fails(13):
                form.set_focus(1)
            form.press_enter()
            seen.append((form.open, form.focus))

        seen = []
        self.assertEqual(self.shown(act), ["Aceptar"])  # the default, wherever the focus is
        self.assertEqual(seen, ["Opt3D(0)", "Cancelar", (False, None)])

    def test_controls_are_live(self):
        def act(form):
            both = [form.controls["Opt3D({})".format(i)] for i in range(2)]
            box, bar, tick = (form.controls[name] for name in ("Precision", "Progreso", "Avisar"))
            form.select("opt3d(1)")
            form.set_text("Precision", "niño 𝄞")
            form.click("Avanza")
            form.click("Avanza")
            form.click("Avisar")
            seen.extend([both[0].value, both[1].value, box.text, bar.value, tick.value])
            form.close()

        seen = []
        self.assertEqual(self.shown(act), ["Opt3D(1)", "Avanza", "Avanza", "Avisar"])
        self.assertEqual(seen, [0.0, -1.0, "niño 𝄞", 50.0, 1.0])

    def test_a_box_in_the_middle_of_a_form(self):
        self.assertEqual(self.shown(lambda form: form.click("Avisa")), ["Avisa", "Cancelar"])
        self.assertEqual(self.person.boxes, [("Aviso del formulario", 0, None)])

    def test_a_failing_routine_reaches_the_user(self):
        def act(form):
            with self.fails(438):
                form.click("nada")
            with self.fails(438):
                form.set_text("nada", "x")
            with self.fails(13):
                form.set_text("Precision", 0.5)
            with self.fails(11, "Orv2_Geo.Testing"):
                form.click("Falla")
            seen.append(form.open)

        seen = []
        with self.fails(11, "Orv2_Geo.Testing"):  # the caller too
            self.shown(act)
        self.assertEqual(seen, [False])

    def test_a_failure_that_nobody_handles_reaches_the_caller(self):
        orv2_geo.set_user_interface(Person(lambda form: form.click("Falla")))
        with self.fails(11, "Orv2_Geo.Testing"):
            show_form()

    def test_a_failure_in_a_dialog_reaches_the_call_of_the_member(self):
        def act(form):
            form.set_text("TxtPresc", tolerance)
            try:
                form.press_enter()
            except RunFailure:
                kept.append(form.open)

        orv2_geo.set_user_interface(Person(act))
        for tolerance, count, number in (("1e999", 2, 6), ("0.001", -1, 9)):
            kept = []
            points = orv2_geo.Ref(count)
            x, y, z = (orv2_geo.DoubleArray([0, 5, 5]) for _ in range(3))
            texts, layers = orv2_geo.StringArray(["", "a", "b"]), orv2_geo.ShortArray([0, 1, 2])
            numbers = orv2_geo.LongArray([0, 7, 8])
            with self.fails(number, "Orv2_Geo.cgeo_Matrices"):
                orv2_geo.create("Orv2_Geo.cgeo_Matrices").Quita_Pts_Repetidos(
                    points, x, y, z, texts, texts, layers, numbers, True, orv2_geo.Ref(1.0))
            self.assertEqual(kept, [False])
            self.assertEqual((points.value, list(x), list(texts), list(numbers)),
                             (count, [0.0, 5.0, 5.0], ["", "a", "b"], [0, 7, 8]))

    def test_enter_on_a_grid_without_a_default_button_is_done_with_it(self):
        def act(form):
            form.set_focus("msf_MaxMin")
            seen.append(form.focus)
            form.press_enter()
            seen.append(form.open)

        seen = []
        orv2_geo.set_user_interface(Person(act))
        found = [orv2_geo.Ref(0.0) for _ in range(6)]
        two = orv2_geo.DoubleArray([0, 1, 2])
        orv2_geo.create("Orv2_Geo.cgeo_Matrices").MaxMin_3Matriz(two, two, two, *found, True)
        self.assertEqual(seen, ["msf_MaxMin", False])

    def test_an_exception_of_the_interface_is_chained(self):
        orv2_geo.set_user_interface(Person(lambda form: form.controls["nada"]))
        with self.fails(440) as caught:
            show_form()
        self.assertIsInstance(caught.exception.__cause__, KeyError)

    def test_an_interrupt_in_the_middle_of_a_form(self):
        def act(form):
            raise KeyboardInterrupt

        orv2_geo.set_user_interface(Person(act))
        with self.assertRaises(KeyboardInterrupt):
            show_form()

    def test_a_form_is_no_more_afterwards(self):
        kept = []

        def act(form):
            kept.extend((form, form.controls["Tabla"]))
            form.close()

        self.shown(act)
        form, grid = kept
        for use in (lambda: form.name, lambda: form.open, lambda: len(form.controls),
                    lambda: form.click("Aceptar"), form.close, lambda: grid.text,
                    lambda: grid.cell(0, 0), lambda: grid.rows, lambda: form.controls["Tabla"]):
            with self.fails(5):
                use()

    def test_a_form_is_used_on_its_own_thread(self):
        def act(form):
            thread = threading.Thread(target=self.use, args=(form, raised))
            thread.start()
            thread.join()
            form.close()

        raised = []
        self.shown(act)
        self.assertEqual(raised, [5])

    @staticmethod
    def use(form, raised):
        try:
            form.close()
        except RunFailure as failure:
            raised.append(failure.number)

    def test_a_form_in_the_middle_of_another(self):
        def act(form):
            if not inner:
                inner.append(None)
                inner.extend(show_form())
            form.press_enter()

        inner = []
        self.assertEqual(self.shown(act), ["Aceptar"])
        self.assertEqual(inner, [None, "Aceptar"])
