#pragma once

class QIODevice;

/// Tells another program which pictures the editor could show: the line of a capture has no answer, and the
/// editor passes over a picture that it cannot read while its window is shown, so that who opens a file for a
/// user has to ask before.
///
/// The question is each encoded picture behind its size in bytes (64 bits, big-endian); the answer is one
/// letter for each, `y` or `n`, in their order and before the next picture is waited for. A picture that ends
/// the process, or that the question does not hold whole, has no answer and counts as `n`; who asks starts
/// another trial for those behind it.
class PictureTrial {
public:
    /// Whether this start is such a question. To be asked before anything else of the editor exists.
    static bool isCall(int argc, char **argv);
    /// Answers on standard output what standard input asks, without a display and without a look at a
    /// running editor. The exit code.
    static int run(int argc, char **argv);

    /// The same from device to device; an application object with fonts must exist. Devices that connect two
    /// processes have to be unbuffered: a buffer would keep a small picture or an answer back until the end.
    static void answer(QIODevice *question, QIODevice *answers);
};
