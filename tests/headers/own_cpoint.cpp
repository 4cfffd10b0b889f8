// SPDX-License-Identifier: MIT

// A host with its own point class, derived and with constructors, as in application frameworks.
struct PlainPoint {
    int x;
    int y;
};

class CPoint : public PlainPoint {
public:
    CPoint() : PlainPoint{0, 0} {}
    CPoint(int column, int row) : PlainPoint{column, row} {}
};

#define OMNAR_HOST_HAS_CPOINT
#include <OmnarRaster.h>

static_assert(sizeof(CPoint) == 2 * sizeof(int));
