"""The captures of a soak, told apart by their colours, and reading them back from files of any format."""
import struct
import subprocess
import zlib

LEVELS, STEP = 6, 51  # of a channel; also what a GIF with too many colours falls back to, so it keeps these exactly
COLOURS = LEVELS ** 3
SAMPLES = 20  # a side
# Of a picture that was drawn on; drawings are thin and cover little of it.
LEAST_SHARE = 0.2


def colour_of(number):
    return tuple(number // LEVELS ** place % LEVELS * STEP for place in (2, 1, 0))


def number_of(colour):
    """The nearest; a JPEG moves a colour by a little."""
    red, green, blue = ((channel + STEP // 2) // STEP for channel in colour)
    return (red * LEVELS + green) * LEVELS + blue


def lines(width, height, colour):
    """The pixels of a capture from the top: one colour, with a band that no format can store as one."""
    plain = bytes(colour) * width
    # Grey, so that a table of 256 colours has room for it.
    band = bytes(x * 7 // 3 & 252 for x in range(width) for _ in range(3))
    first, last = height * 8 // 10, height * 9 // 10
    return [plain] * first + [band] * (last - first) + [plain] * (height - last)


def png(width, height, number):
    """The picture of a capture."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = b"".join(b"\0" + line for line in lines(width, height, colour_of(number)))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows, 1)) + chunk(b"IEND", b""))


def of_bmp(path):
    """The size and the samples of a picture of 24 bits, by itself: most saves are of this format, and fast."""
    content = path.read_bytes()
    size, start, _, width, height = struct.unpack_from("<I4xIIii", content, 2)
    if size != len(content):
        raise ValueError(f"{path.name} is not whole")
    line = (width * 3 + 3) // 4 * 4
    places = [start + y * line + x * 3 for y in middles(height) for x in middles(width)]
    return (width, height), b"".join(content[at:at + 3][::-1] for at in places)


def middles(length):
    """Of equal parts."""
    return [(2 * part + 1) * length // (2 * SAMPLES) for part in range(SAMPLES)]


def of_any(path):
    """The same of any format, by the tools that are there for it: the size as text, then the samples."""
    command = ["convert", str(path), "(", "+clone", "-format", "%w %h\\n", "-write", "info:-", "+delete", ")",
               "-sample", f"{SAMPLES}x{SAMPLES}!", "-depth", "8", "-alpha", "off", "rgb:-"]
    told = subprocess.run(command, capture_output=True, check=False)
    head, _, samples = told.stdout.partition(b"\n")
    if told.returncode != 0 or told.stderr or len(samples) != SAMPLES * SAMPLES * 3:
        raise ValueError(f"{path.name} cannot be decoded: {told.stderr.decode().strip()}")
    width, height = head.split()
    return (int(width), int(height)), samples


class Picture:
    """A file that was decoded: its size, and the number of the colour at each of the places that were looked at."""

    def __init__(self, path):
        self.size, samples = of_bmp(path) if path.suffix == ".bmp" else of_any(path)
        self.numbers = [number_of(samples[at:at + 3]) for at in range(0, len(samples), 3)]

    def share_of(self, number):
        return self.numbers.count(number) / len(self.numbers)

    def number(self):
        """Of the capture that this shows, by the colour that most of it has."""
        return max(set(self.numbers), key=self.numbers.count)

    def shows(self, capture):
        """Whether it is that capture, as far as its history lets one tell."""
        if capture.is_drawn_on:
            return self.share_of(capture.number) >= LEAST_SHARE and self.size == capture.shown_size
        return self.size == capture.size and self.number() == capture.number


class Pixels:
    """All that a BMP shows, to see what a tool did."""

    def __init__(self, size, rows):
        self.size, self.rows = size, rows  # from the top, blue before red

    @classmethod
    def of(cls, path):
        content = path.read_bytes()
        start, width, height = struct.unpack_from("<I4xii", content, 10)
        stride = (width * 3 + 3) // 4 * 4
        starts = range(start + (height - 1) * stride, start - 1, -stride)
        return cls((width, height), [content[at:at + width * 3] for at in starts])

    @classmethod
    def of_capture(cls, number, size):
        """As it came."""
        return cls(size, lines(*size, colour_of(number)[::-1]))

    def __eq__(self, other):
        return self.size == other.size and self.rows == other.rows

    def changes_to(self, later):
        """Where and to what pixels changed: a Change; None for the same picture."""
        assert self.size == later.size, f"a picture of {self.size} became one of {later.size}"
        columns, rows, colours = set(), [], set()
        for y, (before, after) in enumerate(zip(self.rows, later.rows)):
            if before == after:
                continue
            rows.append(y)
            for x in range(self.size[0]):
                new = after[3 * x:3 * x + 3]
                if new != before[3 * x:3 * x + 3]:
                    columns.add(x)
                    colours.add(new[::-1])
        return Change((min(columns), rows[0], max(columns), rows[-1]), colours) if rows else None


class Change:
    """The pixels that a tool changed: left, top, right and bottom of the last ones, and all colours they have now."""

    def __init__(self, box, colours):
        self.box, self.colours = box, colours

    def distance_to(self, colour):
        """Of the nearest among the colours; smooth edges leave few pixels of a thin line exact."""
        return min(distance(mine, colour) for mine in self.colours)


def distance(one, other):
    """Of two colours, by the channel that differs most."""
    return max(abs(a - b) for a, b in zip(one, other))
