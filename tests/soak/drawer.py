"""The doings of a user that change the picture, each with the proof that it did: a save before and one after. Otherwise
a button that has moved would turn a tool into clicks on nothing, and nothing leaks from those."""
import user as places
from pictures import Pixels, colour_of, distance

RED, YELLOW = (255, 0, 0), (255, 240, 0)
# In the order of the panels.
PEN_COLOURS = ((0, 0, 0), (146, 146, 146), (255, 192, 0), (142, 204, 76), (0, 176, 240))
FIGURE_COLOURS = ((0, 0, 0), (146, 146, 146), RED, (255, 192, 0), (142, 204, 76))
HIGHLIGHTER_COLOURS = ((255, 192, 0), YELLOW, (142, 204, 76), (0, 176, 80), (255, 0, 153))
SEEN = 48  # by how much a channel must differ for a colour to be seen on another
REACH = 100, 70  # of a drag, from the middle of the canvas
# What a drawing reaches beyond the drag: half the widest line, the head of an arrow, the tail of a balloon.
OVERHANG = 40
ROUNDED = 8  # by how much a drawing may end before the drag does
NEAR = 32  # of a colour on a smooth edge
IN_SIGHT = 1000, 640  # the largest picture that is seen as a whole
CROP_WIDTHS = 250, 390


class Drawer:
    """What a session does with the tools, on the capture that is selected."""

    def __init__(self, user, chance):
        self.user, self.chance = user, chance
        self.selected = None
        self.pen, self.highlighter, self.outline = RED, YELLOW, RED  # the colours that are set

    def pixels(self):
        """All of the selected capture as it is now."""
        raise NotImplementedError

    def point(self, low=-1.0, high=1.0):
        """Near the middle, between two shares of the reach to the left and right of it."""
        x, y = places.CANVAS
        return (x + self.chance.randint(int(low * REACH[0]), int(high * REACH[0])),
                y + self.chance.randint(-REACH[1], REACH[1]))

    def path(self):
        """Some points, of which the last is clearly to the right of the first."""
        between = [self.point() for _ in range(self.chance.randint(0, 4))]
        return [self.point(-1.0, -0.2), *between, self.point(0.2, 1.0)]

    def stroke(self, button, colour, points=None):
        """One with a tool, and the pictures before and after it. The colour is what must be seen of it."""
        is_first = not self.selected.is_drawn_on
        self.selected.is_drawn_on = True
        before = self.pixels()
        points = points or self.path()
        # A large capture comes smaller than it is, and then a drag would reach farther in it.
        self.user.click(places.ZOOM_RESET)
        self.user.click(button)
        self.user.drag(points)
        after = self.pixels()
        change = self.change(before, after, colour)
        if change:
            self.is_where_dragged(change, points, before.size)
            if is_first and self.is_seen(colour):
                self.is_as_long_as_dragged(change, points)
        return before, after

    def is_seen(self, colour):
        return distance(colour, colour_of(self.selected.number)) >= SEEN

    def change(self, before, after, colour):
        """Of a picture by something of that colour; None where the capture has that colour itself."""
        change = before.changes_to(after)
        assert change or not self.is_seen(colour), f"{self.selected} shows nothing of it"
        if change and self.is_seen(colour):
            assert change.distance_to(colour) <= NEAR, f"{self.selected} shows nothing of the colour {colour}"
        return change

    @staticmethod
    def is_where_dragged(change, points, size):
        """Also in the right place where the whole picture is seen, which stands in the middle then."""
        left, top, right, bottom = change.box
        (first_x, last_x), (first_y, last_y) = ((min(values), max(values)) for values in zip(*points))
        told = f"a drag along {points} changed a picture of {size} in {change.box}"
        assert right - left <= last_x - first_x + 2 * OVERHANG and bottom - top <= last_y - first_y + 2 * OVERHANG, told
        if size[0] <= IN_SIGHT[0] and size[1] <= IN_SIGHT[1]:
            x, y = places.CANVAS[0] - size[0] // 2, places.CANVAS[1] - size[1] // 2
            assert left + x >= first_x - OVERHANG and right + x <= last_x + OVERHANG, told
            assert top + y >= first_y - OVERHANG and bottom + y <= last_y + OVERHANG, told

    @staticmethod
    def is_as_long_as_dragged(change, points):
        """From where the button went down to where it came up; of what is between the toolkit may leave out some."""
        left, _, right, _ = change.box
        (start, _), (end, _) = points[0], points[-1]
        assert right - left >= abs(end - start) - ROUNDED, f"a drag along {points} changed only {change.box}"

    def draw_with_pen(self):
        return self.stroke(places.PEN, self.pen)

    def do_pen(self):
        self.draw_with_pen()

    def do_pen_in_another_colour(self):
        self.user.open_panel(places.PEN)
        index = self.chance.randrange(len(PEN_COLOURS))
        self.user.click(places.PEN_COLOURS[index])
        self.pen = PEN_COLOURS[index]
        self.draw_with_pen()

    def highlight(self):
        """It darkens: of each channel the lower value stays."""
        seen = tuple(map(min, self.highlighter, colour_of(self.selected.number)))
        self.stroke(places.HIGHLIGHTER, seen)

    def do_highlighter(self):
        self.highlight()

    def do_highlighter_in_another_colour(self):
        self.user.open_panel(places.HIGHLIGHTER)
        index = self.chance.randrange(len(HIGHLIGHTER_COLOURS))
        self.user.click(places.HIGHLIGHTER_COLOURS[index])
        self.highlighter = HIGHLIGHTER_COLOURS[index]
        self.highlight()

    def figure(self, index):
        self.user.open_panel(places.FIGURE)
        self.user.click(places.FIGURES[index])
        self.stroke(places.FIGURE, self.outline)

    def do_rectangle(self):
        self.figure(0)

    def do_circle(self):
        self.figure(1)

    def do_balloon(self):
        self.figure(2)

    def do_line(self):
        self.figure(3)

    def do_arrow(self):
        self.figure(4)

    def do_figure_in_another_colour(self):
        self.user.open_panel(places.FIGURE)
        index = self.chance.randrange(len(FIGURE_COLOURS))
        self.user.click(places.FIGURE_COLOURS[index])
        self.outline = FIGURE_COLOURS[index]
        # A click elsewhere closes the panel, which stays for more choices.
        self.user.click(places.ZOOM_RESET)
        self.stroke(places.FIGURE, self.outline)

    def do_line_width(self):
        self.user.open_panel(places.LINE)
        self.user.click(self.chance.choice(places.LINE_WIDTHS))

    def do_mosaic(self):
        """Over a stroke, and the frame of it; the plain colour stays what it is."""
        before, drawn = self.draw_with_pen()
        self.user.open_panel(places.MOSAIC)
        self.user.click(self.chance.choice(places.STRENGTHS))
        x, y = places.CANVAS
        corners = [(x - REACH[0], y - REACH[1]), (x + REACH[0], y + REACH[1])]
        self.user.drag(corners)
        change = drawn.changes_to(self.pixels())
        assert change or drawn == before, f"{self.selected} is not made coarse"
        if change:
            self.is_where_dragged(change, corners, drawn.size)

    def do_eraser(self):
        """Over the whole of a stroke, which goes."""
        is_first = not self.selected.is_drawn_on
        points = self.path()
        before, drawn = self.stroke(places.PEN, self.pen, points)
        self.user.click(places.ERASER)
        self.user.drag(points)
        self.selected.is_erased = True
        after = self.pixels()
        assert after != drawn or drawn == before, f"nothing of {self.selected} is erased"
        # Among others it may take those, too.
        assert after == before or not is_first, f"{self.selected} is erased in part"

    def text(self):
        """Types one, and has the picture before it."""
        self.selected.is_drawn_on = True
        before = self.pixels()
        self.user.click(places.TEXT)
        self.user.click(self.point())
        self.user.type(f"capture {self.taken}")
        return before

    def do_text(self):
        before = self.text()
        x, y = places.CANVAS
        self.user.click((x - 300, y - 250))
        self.change(before, self.pixels(), RED)

    def do_text_and_regret(self):
        before = self.text()
        self.user.key("Escape")
        assert self.pixels() == before, f"a regretted text stays on {self.selected}"

    def do_crop(self):
        before = self.pixels()
        width = self.crop()
        self.user.key("Return")
        self.user.dialog_closed()
        self.selected.is_drawn_on = True
        self.selected.shown_size = width, before.size[1]
        after = self.pixels()
        assert after.size == self.selected.shown_size, f"{self.selected} is cropped to {after.size}"

    def do_crop_and_regret(self):
        before = self.pixels()
        self.crop()
        self.user.key("Escape")
        self.user.dialog_closed()
        assert self.pixels() == before, f"a regretted crop stays on {self.selected}"

    def crop(self):
        """Types another width."""
        width = self.chance.randint(*CROP_WIDTHS)
        self.user.click(places.CROP)
        self.user.click_in_popup(places.CROP_WIDTH)
        self.user.key("ctrl+a")
        self.user.type(str(width))
        self.user.key("Tab")
        return width

    def do_undo(self):
        before, _ = self.draw_with_pen()
        self.user.key("ctrl+z")
        assert self.pixels() == before, f"a stroke on {self.selected} is not undone"

    def do_undo_and_redo(self):
        before, first = self.draw_with_pen()
        _, second = self.draw_with_pen()
        for keys, expected in ((["ctrl+z"] * 2, before), (["ctrl+y"], first), (["ctrl+y"], second)):
            self.user.key(*keys)
            assert self.pixels() == expected, f"{keys} left {self.selected} with other strokes"

    def do_reset(self):
        before, drawn = self.draw_with_pen()
        self.user.click(places.RESET)
        after = self.pixels()
        capture = self.selected
        # A stroke that was erased is a step more than there are drawings to undo, and the crop may stay.
        if capture.is_erased:
            assert after != drawn or drawn == before, f"{capture} is not reset"
            assert after.size in (capture.size, capture.shown_size), f"{capture} is reset to {after.size}"
        else:
            assert after == Pixels.of_capture(capture.number, capture.size), f"{capture} is not as it came"
            capture.is_drawn_on = False
        capture.shown_size = after.size
