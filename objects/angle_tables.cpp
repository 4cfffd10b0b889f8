// SPDX-License-Identifier: MIT

#include "objects/angle_tables.h"

#include <OmnarRaster.h>

#include <cmath>
#include <cstddef>
#include <new>

#include "buffers/host/contract.h"
#include "numeric/integers.h"

namespace omnar {
namespace {

constinit AngleTables tables;
constinit int mark = 0;  // initMark of the tables; if not 0, InitFeatureTables() refuses to replace them

}  // namespace

bool AngleTables::build(double angleSteps) {
    *this = {};
    const int bins = toInt(angleSteps + 0.5);
    const int octant = toInt(bins * 0.125);
    if (bins < -1) return false;  // bins + 1 weights would be a negative number
    arctangents_.reset(new (std::nothrow) int[static_cast<std::size_t>(octant) + 1]);
    if (arctangents_ == nullptr) return false;

    bins_ = bins;
    octant_ = octant;
    binsPerRadian_ = angleSteps / (2.0 * std::numbers::pi);
    for (int i = 0; i <= octant; ++i) {
        arctangents_.get()[i] = toInt(std::atan(static_cast<double>(i) / octant) * binsPerRadian_ + 0.5);
    }
    return true;
}

const AngleTables& angleTables() { return tables; }

}  // namespace omnar

using namespace omnar;

int InitFeatureTables(int initMark, double angleSteps) {
    OMNAR_EXPECT_AS(angleSteps, !std::isnan(angleSteps), "not NaN");
    if (mark != 0) return -1;
    mark = initMark;
    return tables.build(angleSteps) ? 0 : -1;
}

int ReleaseFeatureTables() {
    mark = 0;
    tables = {};
    return 0;
}
