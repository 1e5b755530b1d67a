#pragma once

#include <vector>

namespace figures {

/// What was measured with so much of something.
struct Point {
    double size;
    double value;
};

/// How values grow: as a fixed part and one that grows as the size to the power of `order`.
struct Growth {
    /// 0: flat, since what grows is small beside what does not, or beside the noise.
    double order;
    /// By how much the value of the greatest size is above that of the least, as a part of the latter.
    double rise;
};

/// The growth that comes nearest to four points or more, by ascending and different sizes. All values are
/// above 0, and each is taken to be wrong by some part of itself.
Growth growthOf(const std::vector<Point> &points);

} // namespace figures
