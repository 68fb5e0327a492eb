#include "weathering/rates.h"

#include <cmath>

#include "math/exact_math.h"
#include "talvek.h"

namespace talvek {

namespace {

// These are single-precision values on purpose: the rates were calibrated with them.
constexpr double kSo2Exponent = 0.7F;
constexpr double kNo2Exponent = 0.3F;
constexpr double kMixedGasFactor = 4.2F;
constexpr double kAcidity = 27.38F;
constexpr double kCarbonicAcidity = 6.56F;

constexpr double kHoursPerDay = 24.0;
constexpr double kDaysPerYear = 365.0;

/// Ten times the positive root of a x^2 + b x - s = 0: the thickness of a crust that slows its own growth.
double crustThickness(double a, double b, double s) {
    const double discriminant = b * b - (-s) * (a * 4);
    if (!(discriminant >= 0)) {
        return 0.0;
    }
    return (std::sqrt(discriminant) - b) * 10 / (2 * a);
}

double so2Crust(const MaterialRecord& material, const EpochRecord& epoch) {
    const double hours = epoch.days() * kHoursPerDay;
    const double a = 1 / (2 * material.de());
    const double b = 1 / material.hd() + 1 / material.ks();
    const double s = epoch.so2() * material.mb() * hours / material.db();
    return crustThickness(a, b, s);
}

double so2No2Crust(const MaterialRecord& material, const EpochRecord& epoch) {
    const double hours = epoch.days() * kHoursPerDay;
    const double a = 1 / (2 * material.den());
    const double b = 1 / material.ksn();
    const double s = exact::power(epoch.so2(), kSo2Exponent) * kMixedGasFactor *
                     exact::power(epoch.no2(), kNo2Exponent) * material.mb() * hours / material.db();
    return crustThickness(a, b, s);
}

double acidRainRecession(const MaterialRecord& material, const EpochRecord& epoch) {
    const double hours = epoch.days() * kHoursPerDay;
    const double years = epoch.days() / kDaysPerYear;
    const double dry = 10000.0 * (2 * material.kr()) * exact::power(epoch.so2(), kSo2Exponent) *
                       exact::power(epoch.no2(), kNo2Exponent) * material.mb() * hours / material.db();
    const double wet = (kAcidity * exact::power(10.0, 3 - epoch.rph()) + kCarbonicAcidity) * epoch.rv() * years;
    return (dry + wet) / -1000.0;
}

}  // namespace

double weatheringDelta(const MaterialRecord& material, const EpochRecord& epoch, std::int32_t model) {
    switch (model) {
        case TALVEK_MODEL_SO2_CRUST:
            return so2Crust(material, epoch);
        case TALVEK_MODEL_SO2_NO2_CRUST:
            return so2No2Crust(material, epoch);
        case TALVEK_MODEL_ACID_RAIN:
            return acidRainRecession(material, epoch);
        default:
            return 0.0;
    }
}

}  // namespace talvek
