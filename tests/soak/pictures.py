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


def png(width, height, number):
    """A picture of one colour, with a band that no format can store as one."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    plain = b"\0" + bytes(colour_of(number)) * width
    # Grey, so that a table of 256 colours has room for it.
    band = b"\0" + bytes(x * 7 // 3 & 252 for x in range(width) for _ in range(3))
    first, last = height * 8 // 10, height * 9 // 10
    rows = plain * first + band * (last - first) + plain * (height - last)
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
            fits = all(mine <= its for mine, its in zip(self.size, capture.size))
            return self.share_of(capture.number) >= LEAST_SHARE and (capture.is_cropped and fits
                                                                     or self.size == capture.size)
        return self.size == capture.size and self.number() == capture.number
