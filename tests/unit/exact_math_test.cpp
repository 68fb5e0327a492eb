// The platform's own functions cannot tell what the last bit has to be. The expected results come from a computation
// with hundreds of digits instead: some in tables, those of many random arguments as a checksum. All of them are the
// same on every platform.
#include "math/exact_math.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

using talvek::exact::arcCosine;
using talvek::exact::arcCosines;
using talvek::exact::arcTangent2;
using talvek::exact::arcTangent2f;
using talvek::exact::logarithmf;
using talvek::exact::power;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 0x1.921fb54442d18p1;
constexpr double kSmallest = 0x1p-1074;
constexpr double kLargest = std::numeric_limits<double>::max();

// Written by scripts/exact_math_table.py. Each row: arguments, expected result.
// clang-format off
// BEGIN expected results
constexpr int kRandomCount = 10000;

constexpr std::array<std::array<double, 2>, 64> kArcCosineCases{{
    {-0x1.85e98c41aa0eep-1, 0x1.37df06f25f1efp1},
    {0x1.5803175459dbep-1, 0x1.ab05991b4802cp-1},
    {-0x1.67c5b3768018ep-1, 0x1.2ccb4957bdc14p1},
    {0x1.a4bc2121ed2c8p-1, 0x1.3670382f7fac9p-1},
    {-0x1.d48bd4215de9ep-1, 0x1.5d020b2a6087ap1},
    {-0x1.9582c9085af80p-2, 0x1.fa5b9aa2cc973p0},
    {0x1.5e1e053c9b8f8p-3, 0x1.6624a6dfa95d4p0},
    {0x1.73d7b17e04000p-8, 0x1.90abdd1003faep0},
    {0x1.417b4d4dc9e98p-1, 0x1.c8adf4c45762bp-1},
    {-0x1.e48d84b618656p-1, 0x1.6805b3ca25164p1},
    {-0x1.b96e0cfdcbd70p-3, 0x1.c9bd31601dee5p0},
    {0x1.61c46d24e1e20p-2, 0x1.37d22847b2a79p0},
    {0x1.fffffffffffffp-1, 0x1p-26},
    {0x1.ffffffffffffep-1, 0x1.6a09e667f3bcdp-26},
    {0x1.ff7ced916872bp-1, 0x1.6e634e566a29ep-5},
    {0x1.0000000000001p-1, 0x1.0c152382d7365p0},
    {0x1p-1, 0x1.0c152382d7366p0},
    {0x1.fffffffffffffp-2, 0x1.0c152382d7366p0},
    {0x1.f800000000000p-2, 0x1.0e62d259d32bcp0},
    {0x1.999999999999ap-4, 0x1.787b22ce3f590p0},
    {0x1p-7, 0x1.901fb3eeeb15cp0},
    {0x1p-27, 0x1.921fb52442d18p0},
    {0x1.14b37f4b51f71p-54, 0x1.921fb54442d18p0},
    {0x1p-60, 0x1.921fb54442d18p0},
    {0x0.0000000000001p-1022, 0x1.921fb54442d18p0},
    {0x1p-2, 0x1.51700e0c14b25p0},
    {0x1.6a09e667f3bcdp-1, 0x1.921fb54442d18p-1},
    {0x1.bb67ae8584caap-1, 0x1.0c152382d7366p-1},
    {0x1.e000000000000p-1, 0x1.6bf3891642142p-2},
    {-0x1.fffffffffffffp-1, 0x1.921fb52442d18p1},
    {-0x1.ffffffffffffep-1, 0x1.921fb5170194bp1},
    {-0x1.ff7ced916872bp-1, 0x1.8c66280ae928ep1},
    {-0x1.0000000000001p-1, 0x1.0c152382d7366p1},
    {-0x1p-1, 0x1.0c152382d7366p1},
    {-0x1.fffffffffffffp-2, 0x1.0c152382d7365p1},
    {-0x1.f800000000000p-2, 0x1.0aee4c17593bap1},
    {-0x1.999999999999ap-4, 0x1.abc447ba464a1p0},
    {-0x1p-7, 0x1.941fb6999a8d4p0},
    {-0x1p-27, 0x1.921fb56442d18p0},
    {-0x1.14b37f4b51f71p-54, 0x1.921fb54442d19p0},
    {-0x1p-60, 0x1.921fb54442d18p0},
    {-0x0.0000000000001p-1022, 0x1.921fb54442d18p0},
    {-0x1p-2, 0x1.d2cf5c7c70f0cp0},
    {-0x1.6a09e667f3bcdp-1, 0x1.2d97c7f3321d2p1},
    {-0x1.bb67ae8584caap-1, 0x1.4f1a6c638d03fp1},
    {-0x1.e000000000000p-1, 0x1.64a144217a8f0p1},
    {-0x1.3a89053bc0300p-3, 0x1.b998d471178f6p0},
    {0x1.344359c3250c0p-6, 0x1.8d4e953cb4109p0},
    {0x1.2fd70cc904bd4p-2, 0x1.4500ab659e6b9p0},
    {-0x1.dfcaa32ee6cb0p-3, 0x1.cea910e263a15p0},
    {0x1.2e89dad2e206ap-1, 0x1.e093d6efbce72p-1},
    {0x1.0c0f371183800p-10, 0x1.91dcb175ba802p0},
    {0x1.b9d6a69df4a90p-4, 0x1.7674829216a18p0},
    {-0x1.bd02b84a2ce18p-1, 0x1.4fe9128c9dd2ep1},
    {0x1.5be1294a22f40p-1, 0x1.a5c68fcd44a27p-1},
    {-0x1.34cc2228066ecp-1, 0x1.1bee13ec9b170p1},
    {0x1.f7541fb689354p-2, 0x1.0e942c513bb2bp0},
    {0x1.24ed3c9fae750p-4, 0x1.7fcce060233e8p0},
    {0x1.227debe642adep-1, 0x1.ef5b0ca0050a7p-1},
    {-0x1.76aecdfdc16ecp-2, 0x1.f2058eb2520d0p0},
    {-0x1.06929a2e6eeaap-1, 0x1.0dfcfa8dedb22p1},
    {0x1.ffd700cb52934p-2, 0x1.0c20f90ee184dp0},
    {-0x1.35195cb8dd730p-3, 0x1.b8e8d20ad5e0ep0},
    {0x1.2780c3ff46490p-3, 0x1.6d0e7d5f09a03p0},
}};
constexpr std::uint64_t kArcCosineChecksum = 0xc65355b8d50c1668;

constexpr std::array<std::array<double, 3>, 64> kArcTangent2Cases{{
    {-0x1.9c183791291a0p-3, -0x1.8ed8b7e14ed1cp-2, -0x1.55166f276499dp1},
    {0x1.40fc30018ebe8p-3, -0x1.3ccb1231e10e8p-1, 0x1.725e4e2b91083p1},
    {-0x1.ae259cd520924p-1, -0x1.32c68e1ba5a74p-1, -0x1.185c5ba3df323p1},
    {-0x1.dfc1e31d9a998p-3, 0x1.a3c6754111084p-1, -0x1.1cfca4b87f28dp-2},
    {0x1.2bf71ab7bbd10p-1, 0x1.4aabeaac21a2cp-1, 0x1.7936b9c38e59cp-1},
    {-0x1.557039914712cp-2, 0x1.56d9929b7686cp-1, -0x1.d9166256c93b0p-2},
    {0x1.04e6bb07e5822p-1, 0x1.e6b98ecba8deep-1, 0x1.f7de08d5e8a79p-2},
    {-0x1.51e4cb4d88436p-1, -0x1.e9c5b3092b770p-1, -0x1.44d29ef81e34ap1},
    {-0x1.2e8e162974780p-7, -0x1.7f44a72a21a80p-7, -0x1.3c9685eb76679p1},
    {-0x1.d74b70a0c6fa6p-1, -0x1.e986b97593e10p-4, -0x1.b32d45f640bdcp0},
    {-0x1.871ae45491e00p-3, 0x1.6e8f09749ec88p-1, -0x1.0aed8e94592edp-2},
    {-0x1.94bd3ddbfd9e0p-3, -0x1.691add232297ep-1, -0x1.6f27699da07a1p1},
    {0x0.0000000000003p-1022, 0x1p1, 0x0.0000000000001p-1022},
    {0x0.0000000000001p-1022, 0x1p1, 0x0.0p0},
    {0x0.0000000000005p-1022, -0x1p1, 0x1.921fb54442d18p1},
    {0x0.0000000000007p-1022, 0x1p1, 0x0.0000000000003p-1022},
    {0x0.0000000000001p-1022, 0x1p0, 0x0.0000000000001p-1022},
    {0x0.0000000000001p-1022, 0x1p1023, 0x0.0p0},
    {0x1p-1022, 0x1.0000000000001p0, 0x0.fffffffffffffp-1022},
    {0x0.0000000000001p-1022, 0x0.0000000000001p-1022, 0x1.921fb54442d18p-1},
    {0x1.e42d130773b76p1023, 0x0.0000000000001p-1022, 0x1.921fb54442d18p0},
    {0x1.e42d130773b76p1023, -0x1.e42d130773b76p1023, 0x1.2d97c7f3321d2p1},
    {0x1p-30, 0x1.fffffffffffffp-1, 0x1p-30},
    {0x1p-53, 0x1.fffffffffffffp-1, 0x1.0000000000001p-53},
    {0x1.8000000000000p-39, 0x1.ffffffffffffdp-1, 0x1.8000000000002p-39},
    {0x1p-27, 0x1p0, 0x1p-27},
    {0x1p-33, 0x1.fffffffffffffp-1, 0x1p-33},
    {0x1p-70, 0x1.8000000000000p1, 0x1.5555555555555p-72},
    {-0x1p-70, -0x1.8000000000000p1, -0x1.921fb54442d18p1},
    {0x1.79ca10c924223p-67, -0x1p0, 0x1.921fb54442d18p1},
    {0x1p0, 0x1.79ca10c924223p-67, 0x1.921fb54442d18p0},
    {-0x1p0, 0x1.79ca10c924223p-67, -0x1.921fb54442d18p0},
    {0x1p0, 0x1p0, 0x1.921fb54442d18p-1},
    {0x1p0, -0x1p0, 0x1.2d97c7f3321d2p1},
    {0x1.fffffffffffffp-1, 0x1p0, 0x1.921fb54442d18p-1},
    {0x1p0, 0x1.fffffffffffffp-1, 0x1.921fb54442d19p-1},
    {-0x1.8000000000000p1, 0x1p2, -0x1.4978fa3269ee1p-1},
    {0x1p2, -0x1.8000000000000p1, 0x1.1b6e192ebbe44p1},
    {0x1p0, 0x1p7, 0x1.fffd555bbba97p-8},
    {0x1.8000000000000p1, 0x1p7, 0x1.7fee0184a5c36p-6},
    {0x1.fc00000000000p6, 0x1p7, 0x1.901db3eeef187p-1},
    {0x1.7e43c8800759cp996, 0x1.4f8b588e368f1p-17, 0x1.921fb54442d18p0},
    {0x1.56e1fc2f8f359p-997, 0x1.01297d23ab683p-995, 0x1.4978fa3269ee1p-2},
    {0x0.0000000004000p-1022, 0x0.0000000003000p-1022, 0x1.dac670561bb4fp-1},
    {-0x1.3a89053bc0300p-3, 0x1.344359c3250c0p-6, -0x1.72eadf2744858p0},
    {0x1.2fd70cc904bd4p-2, -0x1.dfcaa32ee6cb0p-3, 0x1.1e9bd3ce55fa7p1},
    {0x1.2e89dad2e206ap-1, 0x1.0c0f371183800p-10, 0x1.91ae4bbaa50f6p0},
    {0x1.b9d6a69df4a90p-4, -0x1.bd02b84a2ce18p-1, 0x1.82519848a939cp1},
    {0x1.5be1294a22f40p-1, -0x1.34cc2228066ecp-1, 0x1.25fbe3fcf1201p1},
    {0x1.f7541fb689354p-2, 0x1.24ed3c9fae750p-4, 0x1.6d2300f46f69ep0},
    {0x1.227debe642adep-1, -0x1.76aecdfdc16ecp-2, 0x1.12610470fa4c1p1},
    {-0x1.06929a2e6eeaap-1, 0x1.ffd700cb52934p-2, -0x1.98b163e361b02p-1},
    {-0x1.35195cb8dd730p-3, 0x1.2780c3ff46490p-3, -0x1.9da2b67b8477cp-1},
    {0x1.f64d9a9fe9c38p-3, -0x1.2fe4ee5414e36p-1, 0x1.5ff77d075467bp1},
    {0x1.76a9cb5c918fcp-1, 0x1.eb21ec6f19a1ep-1, 0x1.4da8c1efce33ap-1},
    {0x1.9792f794196a0p-4, 0x1.f21b6c5d8e168p-3, 0x1.8daa9cd1d49c6p-2},
    {-0x1.ce0db856d6cf8p-3, 0x1.2732bd84f8c40p-1, -0x1.7df14ed0d0207p-2},
    {0x1.6f61e490c4c00p-3, -0x1.c7c30afb917c2p-1, 0x1.78ab8a6bb0282p1},
    {0x1.dbe92a8ef79e6p-1, 0x1.8d38bd0677ee2p-1, 0x1.c0247655eb60ep-1},
    {-0x1.bbf986038bd98p-2, 0x1.1f4a51232bce8p-2, -0x1.fe31857315498p-1},
    {-0x1.6f123e3f49ed8p-2, 0x1.82b4314c82760p-4, -0x1.5032ac4465b3dp0},
    {0x1.42d723aaa3b40p-4, -0x1.01c74d2a739f2p-1, 0x1.7e3f338c7c961p1},
    {0x1.33661650049cap-1, -0x1.43e654af83226p-1, 0x1.30f0146bc1d28p1},
    {-0x1.ee2cf91a81b22p-1, -0x1.8dfd8e2a8cda4p-2, -0x1.f41fe8b85f89bp0},
}};
constexpr std::uint64_t kArcTangent2Checksum = 0x067036036e0cc914;

constexpr std::array<std::array<double, 3>, 64> kArcTangent2fCases{{
    {-0x1.30030c0000000p-1, 0x1.6b9d5a0000000p-2, -0x1.0825f00000000p0},
    {-0x1.704b000000000p-1, -0x1.1c884e0000000p-1, -0x1.1d42560000000p1},
    {0x1.76fbd40000000p-2, -0x1.5bb0d20000000p-6, 0x1.a0f1560000000p0},
    {-0x1.a1cc000000000p-1, -0x1.b4d8000000000p-1, -0x1.3071f20000000p1},
    {0x1.d440940000000p-1, 0x1.9d8ad80000000p-1, 0x1.b1d9820000000p-1},
    {-0x1.59c0720000000p-1, -0x1.a3debc0000000p-2, -0x1.0ee8e00000000p1},
    {-0x1.2c63580000000p-1, 0x1.3eb43a0000000p-3, -0x1.4fbffa0000000p0},
    {-0x1.659dcc0000000p-1, 0x1.3d2f1a0000000p-5, -0x1.83f2840000000p0},
    {-0x1.e83b780000000p-3, -0x1.9f760c0000000p-2, -0x1.4e202a0000000p1},
    {-0x1.e0f44a0000000p-1, -0x1.c574c80000000p-1, -0x1.29d3c00000000p1},
    {-0x1.4df55c0000000p-1, -0x1.b5cef80000000p-1, -0x1.3eb6c20000000p1},
    {0x1.aeb6ee0000000p-2, 0x1.16454c0000000p-2, 0x1.fe8fc20000000p-1},
    {0x1.8000000000000p-148, 0x1p1, 0x1p-149},
    {0x1p-149, 0x1p1, 0x0.0p0},
    {0x1.4000000000000p-147, -0x1p1, 0x1.921fb60000000p1},
    {0x1.c000000000000p-147, 0x1p1, 0x1.8000000000000p-148},
    {0x1p-149, 0x1p127, 0x0.0p0},
    {0x1p-149, 0x1p-149, 0x1.921fb60000000p-1},
    {0x1p127, 0x1p-149, 0x1.921fb60000000p0},
    {0x1p-126, 0x1.0000020000000p0, 0x1.fffffc0000000p-127},
    {0x1p-20, 0x1.fffffe0000000p-1, 0x1p-20},
    {0x1p-10, 0x1.fffffe0000000p-1, 0x1.fffff80000000p-11},
    {0x1p0, 0x1p0, 0x1.921fb60000000p-1},
    {0x1p0, -0x1p0, 0x1.2d97c80000000p1},
    {-0x1.8000000000000p1, 0x1p2, -0x1.4978fa0000000p-1},
    {0x1p2, -0x1.8000000000000p1, 0x1.1b6e1a0000000p1},
    {0x1p0, 0x1p7, 0x1.fffd560000000p-8},
    {0x1.8000000000000p1, 0x1p7, 0x1.7fee020000000p-6},
    {0x1.fc00000000000p6, 0x1p7, 0x1.901db40000000p-1},
    {0x1p-70, 0x1.8000000000000p1, 0x1.5555560000000p-72},
    {-0x1p-70, -0x1.8000000000000p1, -0x1.921fb60000000p1},
    {-0x1.3a89100000000p-3, 0x1.3443000000000p-6, -0x1.72eaea0000000p0},
    {0x1.2fd7080000000p-2, -0x1.dfcab00000000p-3, 0x1.1e9bd60000000p1},
    {0x1.2e89d80000000p-1, 0x1.0c08000000000p-10, 0x1.91ae4e0000000p0},
    {0x1.b9d6a00000000p-4, -0x1.bd02bc0000000p-1, 0x1.8251980000000p1},
    {0x1.5be1280000000p-1, -0x1.34cc240000000p-1, 0x1.25fbe40000000p1},
    {0x1.f754180000000p-2, 0x1.24ed200000000p-4, 0x1.6d23040000000p0},
    {0x1.227de80000000p-1, -0x1.76aed00000000p-2, 0x1.1261060000000p1},
    {-0x1.06929c0000000p-1, 0x1.ffd7000000000p-2, -0x1.98b1660000000p-1},
    {-0x1.3519600000000p-3, 0x1.2780c00000000p-3, -0x1.9da2bc0000000p-1},
    {0x1.f64d900000000p-3, -0x1.2fe4f00000000p-1, 0x1.5ff77e0000000p1},
    {0x1.76a9c80000000p-1, 0x1.eb21ec0000000p-1, 0x1.4da8c00000000p-1},
    {0x1.9792e00000000p-4, 0x1.f21b600000000p-3, 0x1.8daa900000000p-2},
    {-0x1.ce0dc00000000p-3, 0x1.2732bc0000000p-1, -0x1.7df1560000000p-2},
    {0x1.6f61e00000000p-3, -0x1.c7c30c0000000p-1, 0x1.78ab8a0000000p1},
    {0x1.dbe9280000000p-1, 0x1.8d38bc0000000p-1, 0x1.c024760000000p-1},
    {-0x1.bbf9880000000p-2, 0x1.1f4a500000000p-2, -0x1.fe31880000000p-1},
    {-0x1.6f12400000000p-2, 0x1.82b4200000000p-4, -0x1.5032b00000000p0},
    {0x1.42d7200000000p-4, -0x1.01c7500000000p-1, 0x1.7e3f340000000p1},
    {0x1.3366140000000p-1, -0x1.43e6580000000p-1, 0x1.30f0160000000p1},
    {-0x1.ee2cfc0000000p-1, -0x1.8dfd900000000p-2, -0x1.f41fe80000000p0},
    {-0x1.19cfdc0000000p-1, 0x1.1a23d80000000p-2, -0x1.1b4f960000000p0},
    {0x1.f27e540000000p-1, -0x1.2145e80000000p-2, 0x1.da6aa20000000p0},
    {0x1.4ec3b00000000p-3, -0x1.b293b00000000p-2, 0x1.6310940000000p1},
    {-0x1.41792c0000000p-1, 0x1.e82bc00000000p-4, -0x1.621a100000000p0},
    {-0x1.f274780000000p-1, -0x1.4556ec0000000p-1, -0x1.13148c0000000p1},
    {-0x1.52e7200000000p-4, -0x1.b2a1b80000000p-2, -0x1.797b220000000p1},
    {0x1.152db00000000p-2, -0x1.fc57440000000p-1, 0x1.700e1c0000000p1},
    {0x1.8d1a800000000p-3, 0x1.e52a880000000p-1, 0x1.9d5c520000000p-3},
    {-0x1.2711280000000p-2, 0x1.bfe0040000000p-1, -0x1.45d9ba0000000p-2},
    {0x1.5842480000000p-1, -0x1.b512a00000000p-1, 0x1.3cba1e0000000p1},
    {-0x1.bf45800000000p-2, 0x1.1684b00000000p-2, -0x1.038b9a0000000p0},
    {-0x1.0dd3d40000000p-1, 0x1.5d6cf00000000p-1, -0x1.50abbe0000000p-1},
    {0x1.465fd00000000p-2, -0x1.a504dc0000000p-1, 0x1.62cb080000000p1},
}};
constexpr std::uint64_t kArcTangent2fChecksum = 0xccb77a39d46d0f70;

constexpr std::array<std::array<double, 3>, 89> kPowerCases{{
    {0x1.057121c045a5dp-1, 0x1.b82906caef8b4p-1, 0x1.1f4c1c71284ccp-1},
    {0x1.40855af8de624p0, 0x1.2b86591068890p1, 0x1.b12d79f68dc29p0},
    {0x1.f216930e53a6fp-1, 0x1.1d0ec99c595dcp1, 0x1.e18899052f8d2p-1},
    {0x1.42b53b78bc543p-1, -0x1.63d37a1bf7760p-4, 0x1.0a79413fcdf4fp0},
    {0x1.991813623db62p-2, -0x1.df55c0d428fa2p0, 0x1.64b0324151ba9p2},
    {0x1.16cb09dffc7e2p1, 0x1.057ef591832f0p-1, 0x1.7cfb80fc87ecdp0},
    {0x1.612d87997d56ap-982, 0x1.be02e091c5ae5p-1, 0x1.f50b9f8ccf1b7p-856},
    {0x1.ceec1c9dbc66dp-968, 0x1.b2da40e2f7468p-1, 0x1.7f6907072b8d2p-822},
    {0x1.a0e1d16e9d9d2p961, -0x1.e0f4fdb5a0d97p-1, 0x1.857befddc221fp-904},
    {0x1.9f73349d806e0p-993, 0x1.dc942de18d028p-1, 0x1.45d0e69b8eee8p-924},
    {0x1.1f1284bdec0e6p-984, -0x1.a1f534016a4d2p-1, 0x1.17b55fe43a81dp803},
    {0x1.f4a106d9b5b7ap-975, 0x1.520c5f306ac5fp-1, 0x1.dbe3c86e63334p-644},
    {0x1.5b95344972fe2p1, 0x1p-1, 0x1.a5db1ce4c605bp0},
    {0x1.256565cadcbf4p0, 0x1p-1, 0x1.120f999e99374p0},
    {0x1.2b035c1197f48p0, 0x1p-1, 0x1.14ac03ef7226dp0},
    {0x1.4eb5f85e783a9p1, 0x1p-1, 0x1.9df88f9ecb617p0},
    {0x1.283741a1bef08p0, 0x1p-1, 0x1.135ff00663366p0},
    {0x1.d407bb3641da5p0, 0x1p-1, 0x1.5a24e31b39fa6p0},
    {0x1.846e0883c3a3cp1, -0x1.8b4a54ce26298p0, 0x1.70e78b4ce8731p-3},
    {0x1.83cdd8900a75cp1, -0x1.c15ab46ac6880p2, 0x1.b51d838518386p-12},
    {0x1.3f0d3d8fdce20p-3, 0x1.ebbfcd9e576f4p2, 0x1.4f710a85fb290p-21},
    {0x1.4c355f6f1765ap0, -0x1.20156bfefd350p1, 0x1.1cd0750f9ad4dp-1},
    {0x1.ab2f96f8ea82ep1, -0x1.fc7f83b66c10ap2, 0x1.2319dcaf3073ep-14},
    {0x1.bc9fe4f4504d4p0, -0x1.ae674949e7554p1, 0x1.40006facee61dp-3},
    {0x1.c72ddd23fa67ap1, 0x1.e69d5ce4007b0p-1, 0x1.ab6e06b3b5af9p1},
    {0x1.cfe14d30b1c02p0, 0x1.f2e9e11266600p-4, 0x1.133945eb04c8dp0},
    {0x1.04fd60efb59b2p0, 0x1.a619600ac0b50p0, 0x1.08477607489c9p0},
    {0x1.380c7f9925a8fp1, -0x1.1eac74fd1ad38p0, 0x1.797fc540b842ap-2},
    {0x1.47c5e60b5dbf6p1, -0x1.520ece1244e32p2, 0x1.c88072e7dfaa9p-8},
    {0x1.1e96786688298p-2, -0x1.3c63a1864d780p-1, 0x1.192a388d36eb9p1},
    {0x1.8000000000000p1, 0x1.1000000000000p5, 0x1.d9fe779881944p53},
    {0x1.8000000000000p1, 0x1.0800000000000p5, 0x1.3bfefa65abb83p52},
    {0x1.8000000000000p1, 0x1.1800000000000p5, 0x1.637ed9b2612f3p55},
    {0x1.4000000000000p2, 0x1.7000000000000p4, 0x1.52d02c7e14af6p53},
    {0x1.c000000000000p2, 0x1.3000000000000p4, 0x1.43f9e0d2d93ecp53},
    {0x1.6000000000000p3, 0x1.e000000000000p3, 0x1.dae5ec28da7c6p51},
    {0x1.4400000000000p6, 0x1p-2, 0x1.8000000000000p1},
    {0x1.a553f8878fa04p50, 0x1.1000000000000p0, 0x1.d9fe779881944p53},
    {0x1.a553f8878fa04p50, 0x1.0800000000000p0, 0x1.3bfefa65abb83p52},
    {0x1.e600000000000p17, 0x1.999999999999ap-3, 0x1.8000000000001p3},
    {0x1.ffffffc000000p-1, 0x1p1, 0x1.ffffff8000000p-1},
    {0x1.ffff800000000p-1, 0x1.8000000000000p1, 0x1.fffe800060000p-1},
    {0x1.2000000000000p1, 0x1.1000000000000p4, 0x1.d9fe779881944p19},
    {0x1.2000000000000p1, 0x1.0800000000000p4, 0x1.3bfefa65abb83p19},
    {0x1p1, -0x1.0cc0000000000p10, 0x0.0p0},
    {0x1p1, -0x1.0c80000000000p10, 0x0.0000000000001p-1022},
    {0x1p1, -0x1.0c60000000000p10, 0x0.0000000000001p-1022},
    {0x1p2, -0x1.0cc0000000000p9, 0x0.0p0},
    {0x1p-1, 0x1.0cc0000000000p10, 0x0.0p0},
    {0x0.0000000000001p-1022, 0x1p0, 0x0.0000000000001p-1022},
    {0x0.0000000000001p-1022, 0x1p-1, 0x1p-537},
    {0x0.0000000000001p-1022, -0x1.ccccccccccccdp-1, 0x1.8406003b2aecdp966},
    {0x1.8000000000000p-42, 0x1.9000000000000p4, 0x0.00062a32b1552p-1022},
    {0x1.4000000000000p-213, 0x1.4000000000000p2, 0x0.000000000061ap-1022},
    {0x1.8000000000000p-214, 0x1.4000000000000p2, 0x0.000000000007ap-1022},
    {0x1.0000000000003p0, 0x1.8000000000000p-1, 0x1.0000000000002p0},
    {0x1.0000000000001p0, 0x1.8000000000000p0, 0x1.0000000000002p0},
    {0x1.0000000000001p0, -0x1p-1, 0x1.fffffffffffffp-1},
    {0x1.0000000000003p0, 0x1p-1, 0x1.0000000000001p0},
    {0x1.0000000000006p0, 0x1p-2, 0x1.0000000000001p0},
    {0x1.ffffffffffffep-1, 0x1p-2, 0x1.fffffffffffffp-1},
    {0x1.fffffffffffffp-1, 0x1.8000000000000p0, 0x1.fffffffffffffp-1},
    {0x1.fffffffffffffp-1, 0x1.4000000000000p1, 0x1.ffffffffffffep-1},
    {0x1.0000000000001p0, 0x1p60, 0x1.41c7a8814be19p369},
    {0x1.0000000000001p0, -0x1.582b4c9a9db00p61, 0x1.ea63abfe42715p-994},
    {0x1.fffffffffffffp-1, 0x1.68d28e3f00280p62, 0x0.00001d939ead4p-1022},
    {0x1.4000000000000p3, 0x1.3400000000000p8, 0x1.1ccf385ebc8a0p1023},
    {0x1.4000000000000p3, 0x1.3500000000000p8, kInfinity},
    {0x1.4000000000000p3, -0x1.4300000000000p8, 0x0.0000000000002p-1022},
    {0x1.4000000000000p3, -0x1.4400000000000p8, 0x0.0p0},
    {0x1.4000000000000p3, 0x1.6000000000000p4, 0x1.0f0cf064dd592p73},
    {0x1.4000000000000p3, 0x1.7000000000000p4, 0x1.52d02c7e14af6p76},
    {0x1.5bf0a8b145769p1, 0x1.62e42fefa39efp9, 0x1.ffffffffffdd6p1023},
    {0x1.5bf0a8b145769p1, -0x1.74910d52d3051p9, 0x0.0000000000001p-1022},
    {0x1.5bf0a8b145769p1, -0x1.749999999999ap9, 0x0.0p0},
    {0x1p-1, 0x1p-60, 0x1p0},
    {0x1.56e1fc2f8f359p-997, 0x1p-80, 0x1p0},
    {0x1.ccccccccccccdp-1, 0x1.86a0000000000p16, 0x0.0p0},
    {0x1p1, 0x1p-1, 0x1.6a09e667f3bcdp0},
    {0x1.c000000000000p2, -0x1p0, 0x1.2492492492492p-3},
    {0x1.7e43c8800759cp996, 0x1p-61, 0x1.0000000000001p0},
    {0x1.56e1fc2f8f359p-997, 0x1p-62, 0x1.fffffffffffffp-1},
    {0x0.0000000000001p-1022, -0x1p-62, 0x1.0000000000001p0},
    {0x1.8000000000000p0, 0x1.1000000000000p5, 0x1.d9fe779881944p19},
    {0x1.8000000000000p2, 0x1.1000000000000p5, 0x1.d9fe779881944p87},
    {0x1.8000000000000p-1, 0x1.1000000000000p5, 0x1.d9fe779881944p-15},
    {0x1.8000000000000p-3, 0x1.1000000000000p5, 0x1.d9fe779881944p-83},
    {0x1.8000000000000p4, 0x1.1000000000000p5, 0x1.d9fe779881944p155},
    {0x1.8000000000000p-30, 0x1.1000000000000p5, 0x1.d9fe779881944p-1001},
}};
constexpr std::uint64_t kPowerChecksum = 0x3cfdd5044552c4d8;

constexpr std::array<std::array<double, 2>, 64> kLogarithmfCases{{
    {0x1.b121a60000000p76, 0x1.a9a3f20000000p5},
    {0x1.bacb4a0000000p25, 0x1.1e06960000000p4},
    {0x1.c09d7c0000000p27, 0x1.346a580000000p4},
    {0x1.2f1fd60000000p3, 0x1.1fcbce0000000p1},
    {0x1.22d5700000000p-65, -0x1.676a7c0000000p5},
    {0x1.5190c00000000p78, 0x1.b2bc8c0000000p5},
    {0x1.827a740000000p-7, -0x1.1c2b1e0000000p2},
    {0x1.6351d80000000p95, 0x1.08b5120000000p6},
    {0x1.b97c700000000p-14, -0x1.2517480000000p3},
    {0x1.cb534c0000000p13, 0x1.330e4a0000000p3},
    {0x1.d1309c0000000p62, 0x1.5c94420000000p5},
    {0x1.f0dde00000000p-8, -0x1.38733c0000000p2},
    {0x1p-149, -0x1.9d1da00000000p6},
    {0x1.8000000000000p-148, -0x1.98b8a60000000p6},
    {0x1p-126, -0x1.5d58a00000000p6},
    {0x1p127, 0x1.601e680000000p6},
    {0x1.fffffe0000000p127, 0x1.62e4300000000p6},
    {0x1.fffffe0000000p-1, -0x1p-24},
    {0x1.0000020000000p0, 0x1.fffffe0000000p-24},
    {0x1.ffe0000000000p-1, -0x1.0008000000000p-12},
    {0x1.0010000000000p0, 0x1.fff0000000000p-13},
    {0x1p-1, -0x1.62e4300000000p-1},
    {0x1p1, 0x1.62e4300000000p-1},
    {0x1.4000000000000p3, 0x1.26bb1c0000000p1},
    {0x1.6800000000000p0, 0x1.5d1bdc0000000p-2},
    {0x1.6800020000000p0, 0x1.5d1be20000000p-2},
    {0x1.0400000000000p0, 0x1.fc0a8c0000000p-7},
    {0x1.f800000000000p-1, -0x1.0205660000000p-6},
    {0x1.6800000000000p-1, -0x1.68ac840000000p-2},
    {0x1.8000000000000p1, 0x1.193ea80000000p0},
    {0x1.c000000000000p2, 0x1.f2272a0000000p0},
    {0x1.e848000000000p19, 0x1.ba18aa0000000p3},
    {0x1.47615a0000000p120, 0x1.4db1c60000000p6},
    {0x1.2308400000000p10, 0x1.c3d2960000000p2},
    {0x1.9b76ac0000000p71, 0x1.8d81020000000p5},
    {0x1.7597b20000000p98, 0x1.1139c40000000p6},
    {0x1.9457de0000000p-25, -0x1.0df20c0000000p4},
    {0x1.f8dd300000000p-125, -0x1.57db6e0000000p6},
    {0x1.8317dc0000000p18, 0x1.9c7c020000000p3},
    {0x1.6599fa0000000p4, 0x1.8dac9e0000000p1},
    {0x1.0e174e0000000p28, 0x1.3763220000000p4},
    {0x1.9919100000000p91, 0x1.fc5c820000000p5},
    {0x1.141ec20000000p10, 0x1.c074d40000000p2},
    {0x1.8435780000000p64, 0x1.6638e80000000p5},
    {0x1.c8df500000000p119, 0x1.4c41460000000p6},
    {0x1.3ab25c0000000p-7, -0x1.29517c0000000p2},
    {0x1.385e500000000p90, 0x1.f4a8740000000p5},
    {0x1.baf2680000000p109, 0x1.3067c00000000p6},
    {0x1.5317f80000000p-17, -0x1.7013b00000000p3},
    {0x1.469eb00000000p86, 0x1.ded5900000000p5},
    {0x1.cfa97e0000000p34, 0x1.8293620000000p4},
    {0x1.d8cf4a0000000p90, 0x1.f7f95e0000000p5},
    {0x1.385d7a0000000p117, 0x1.45305a0000000p6},
    {0x1.6f7c3e0000000p87, 0x1.e5528e0000000p5},
    {0x1.6ed7c60000000p-24, -0x1.0469940000000p4},
    {0x1.c619180000000p-112, -0x1.343cc60000000p6},
    {0x1.d666160000000p72, 0x1.941eb80000000p5},
    {0x1.b4d7e40000000p42, 0x1.da58620000000p4},
    {0x1.8ed9d60000000p125, 0x1.5c58e40000000p6},
    {0x1.4df6ec0000000p39, 0x1.b4c70e0000000p4},
    {0x1.6b73060000000p-71, -0x1.86e7660000000p5},
    {0x1.d998140000000p-23, -0x1.ea78860000000p3},
    {0x1.0806020000000p-73, -0x1.948d120000000p5},
    {0x1.6ba5600000000p127, 0x1.6185d40000000p6},
}};
constexpr std::uint64_t kLogarithmfChecksum = 0x74cef91af3c22276;
// END expected results
// clang-format on

/// The functions with doubles for arguments and results, so that the same code tests all of them.
double arcCosineOf(double x, double /*unused*/) {
    return arcCosine(x);
}
double arcTangent2Of(double y, double x) {
    return arcTangent2(y, x);
}
double arcTangent2fOf(double y, double x) {
    return arcTangent2f(static_cast<float>(y), static_cast<float>(x));
}
double powerOf(double base, double exponent) {
    return power(base, exponent);
}
double logarithmfOf(double x, double /*unused*/) {
    return logarithmf(static_cast<float>(x));
}

using Function = double (*)(double, double);

/// Equal with the signs of zeros; any NaN will only do if its sign bit is clear.
void expectSame(double actual, double expected, double first, double second) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(actual), std::bit_cast<std::uint64_t>(expected))
        << std::hexfloat << "arguments " << first << ", " << second << ": " << actual << " instead of " << expected;
}

template <typename Rows>
void expectRows(Function function, const Rows& rows) {
    for (const auto& row : rows) {
        expectSame(function(row.front(), row[row.size() - 2]), row.back(), row.front(), row[row.size() - 2]);
    }
}

class Generator {
  public:
    /// 53 random bits.
    std::uint64_t next() {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return state_ >> 11U;
    }

    double unit() { return static_cast<double>(next()) * 0x1p-53; }

    double floatUnit() { return static_cast<double>(next() >> 29U) * 0x1p-24; }

  private:
    std::uint64_t state_ = 1;
};

struct Arguments {
    double first;
    double second = 0.0;
};

Arguments drawArcCosine(Generator& generator) {
    return {2.0 * generator.unit() - 1.0};
}

// Braces evaluate from left to right.
Arguments drawArcTangent2(Generator& generator) {
    return Arguments{2.0 * generator.unit() - 1.0, 2.0 * generator.unit() - 1.0};
}

Arguments drawArcTangent2f(Generator& generator) {
    return Arguments{2.0 * generator.floatUnit() - 1.0, 2.0 * generator.floatUnit() - 1.0};
}

Arguments drawPower(Generator& generator) {
    return Arguments{4.0 * generator.unit(), 16.0 * generator.unit() - 8.0};
}

Arguments drawLogarithmf(Generator& generator) {
    return {std::bit_cast<float>(static_cast<std::uint32_t>(1 + generator.next() % 0x7f7fffff))};
}

using Draw = Arguments (*)(Generator&);

std::uint64_t checksum(Function function, Draw draw) {
    Generator generator;
    std::uint64_t sum = 0;
    for (int i = 0; i < kRandomCount; ++i) {
        const Arguments arguments = draw(generator);
        sum = (sum ^ sum >> 32U ^ std::bit_cast<std::uint64_t>(function(arguments.first, arguments.second))) *
              0x100000001b3U;
    }
    return sum;
}

TEST(ExactMathArcCosine, GivesTabulatedResults) {
    expectRows(arcCosineOf, kArcCosineCases);
}
TEST(ExactMathArcTangent2, GivesTabulatedResults) {
    expectRows(arcTangent2Of, kArcTangent2Cases);
}
TEST(ExactMathArcTangent2f, GivesTabulatedResults) {
    expectRows(arcTangent2fOf, kArcTangent2fCases);
}
TEST(ExactMathPower, GivesTabulatedResults) {
    expectRows(powerOf, kPowerCases);
}
TEST(ExactMathLogarithmf, GivesTabulatedResults) {
    expectRows(logarithmfOf, kLogarithmfCases);
}

TEST(ExactMathArcCosine, RoundsRandomArgumentsCorrectly) {
    EXPECT_EQ(checksum(arcCosineOf, drawArcCosine), kArcCosineChecksum);
}

TEST(ExactMathArcTangent2, RoundsRandomArgumentsCorrectly) {
    EXPECT_EQ(checksum(arcTangent2Of, drawArcTangent2), kArcTangent2Checksum);
}

TEST(ExactMathArcTangent2f, RoundsRandomArgumentsCorrectly) {
    EXPECT_EQ(checksum(arcTangent2fOf, drawArcTangent2f), kArcTangent2fChecksum);
}

TEST(ExactMathPower, RoundsRandomArgumentsCorrectly) {
    EXPECT_EQ(checksum(powerOf, drawPower), kPowerChecksum);
}

TEST(ExactMathLogarithmf, RoundsRandomArgumentsCorrectly) {
    EXPECT_EQ(checksum(logarithmfOf, drawLogarithmf), kLogarithmfChecksum);
}

TEST(ExactMathArcCosine, FollowsTheStandardForSpecialValues) {
    constexpr std::array<std::array<double, 2>, 11> kRows{{
        {1.0, 0.0},
        {-1.0, kPi},
        {0.0, kPi / 2},
        {-0.0, kPi / 2},
        {kSmallest, kPi / 2},
        {1.0 + 0x1p-52, kNaN},
        {-1.0 - 0x1p-52, kNaN},
        {kInfinity, kNaN},
        {-kInfinity, kNaN},
        {kNaN, kNaN},
        {-kNaN, kNaN},
    }};
    expectRows(arcCosineOf, kRows);
}

/// Special values of arcTangent2 for coordinates that are no floats' limits; `small` is the smallest positive number.
void expectSpecialAngles(Function function, double pi, double threeQuarters, double small, double large) {
    const std::array<std::array<double, 3>, 20> rows{{
        {0.0, 0.0, 0.0},
        {0.0, -0.0, pi},
        {0.0, 1.0, 0.0},
        {0.0, -1.0, pi},
        {0.0, small, 0.0},
        {0.0, -large, pi},
        {0.0, kInfinity, 0.0},
        {0.0, -kInfinity, pi},
        {1.0, 0.0, pi / 2},
        {1.0, -0.0, pi / 2},
        {small, -0.0, pi / 2},
        {1.0, kInfinity, 0.0},
        {large, -kInfinity, pi},
        {kInfinity, 1.0, pi / 2},
        {kInfinity, -large, pi / 2},
        {kInfinity, 0.0, pi / 2},
        {kInfinity, kInfinity, pi / 4},
        {kInfinity, -kInfinity, threeQuarters},
        {large, small, pi / 2},
        {small, large, 0.0},
    }};
    for (const auto& [y, x, angle] : rows) {
        expectSame(function(y, x), angle, y, x);
        expectSame(function(-y, x), -angle, -y, x);
    }
    for (const double other : {0.0, 1.0, -1.0, kInfinity, -kInfinity, kNaN}) {
        expectSame(function(kNaN, other), kNaN, kNaN, other);
        expectSame(function(other, -kNaN), kNaN, other, -kNaN);
    }
}

TEST(ExactMathArcTangent2, FollowsTheStandardForSpecialValues) {
    expectSpecialAngles(arcTangent2Of, kPi, 0x1.2d97c7f3321d2p1, kSmallest, kLargest);
}

TEST(ExactMathArcTangent2f, FollowsTheStandardForSpecialValues) {
    expectSpecialAngles(arcTangent2fOf, 0x1.921fb6p1, 0x1.2d97c8p1, 0x1p-149, std::numeric_limits<float>::max());
}

TEST(ExactMathLogarithmf, FollowsTheStandardForSpecialValues) {
    constexpr std::array<std::array<double, 2>, 9> kRows{{
        {1.0, 0.0},
        {0.0, -kInfinity},
        {-0.0, -kInfinity},
        {kInfinity, kInfinity},
        {-kInfinity, kNaN},
        {-1.0, kNaN},
        {-0x1p-149, kNaN},
        {kNaN, kNaN},
        {-kNaN, kNaN},
    }};
    expectRows(logarithmfOf, kRows);
}

TEST(ExactMathPower, IsOneForExponentZeroAndBaseOne) {
    for (const double other : {0.0, -0.0, 1.0, -1.0, 2.5, -kSmallest, kLargest, kInfinity, -kInfinity, kNaN, -kNaN}) {
        expectSame(power(other, 0.0), 1.0, other, 0.0);
        expectSame(power(other, -0.0), 1.0, other, -0.0);
        expectSame(power(1.0, other), 1.0, 1.0, other);
    }
    expectSame(power(-1.0, kInfinity), 1.0, -1.0, kInfinity);
    expectSame(power(-1.0, -kInfinity), 1.0, -1.0, -kInfinity);
}

TEST(ExactMathPower, FollowsTheStandardForZeros) {
    constexpr std::array<std::array<double, 3>, 18> kRows{{
        {0.0, -3.0, kInfinity},
        {-0.0, -3.0, -kInfinity},
        {0.0, -2.0, kInfinity},
        {-0.0, -2.0, kInfinity},
        {0.0, -2.5, kInfinity},
        {-0.0, -2.5, kInfinity},
        {0.0, -kInfinity, kInfinity},
        {-0.0, -kInfinity, kInfinity},
        {0.0, 3.0, 0.0},
        {-0.0, 3.0, -0.0},
        {0.0, 2.0, 0.0},
        {-0.0, 2.0, 0.0},
        {-0.0, 0.5, 0.0},
        {0.0, kInfinity, 0.0},
        {-0.0, kInfinity, 0.0},
        {-0.0, 0x1.fffffffffffffp52, -0.0},
        {-0.0, 0x1p53, 0.0},
        {-0.0, -kLargest, kInfinity},
    }};
    expectRows(powerOf, kRows);
}

TEST(ExactMathPower, FollowsTheStandardForInfinitiesAndNaN) {
    constexpr std::array<std::array<double, 3>, 26> kRows{{
        {0.5, -kInfinity, kInfinity},
        {-0.5, -kInfinity, kInfinity},
        {2.0, -kInfinity, 0.0},
        {-2.0, -kInfinity, 0.0},
        {0.5, kInfinity, 0.0},
        {-0.5, kInfinity, 0.0},
        {2.0, kInfinity, kInfinity},
        {-2.0, kInfinity, kInfinity},
        {-kInfinity, -3.0, -0.0},
        {-kInfinity, -2.0, 0.0},
        {-kInfinity, -0.5, 0.0},
        {-kInfinity, 3.0, -kInfinity},
        {-kInfinity, 2.0, kInfinity},
        {-kInfinity, 0.5, kInfinity},
        {kInfinity, -1.0, 0.0},
        {kInfinity, 1.0, kInfinity},
        {kInfinity, kInfinity, kInfinity},
        {-kInfinity, kInfinity, kInfinity},
        {kInfinity, -kInfinity, 0.0},
        {kNaN, 1.0, kNaN},
        {-kNaN, 2.0, kNaN},
        {2.0, kNaN, kNaN},
        {0.0, -kNaN, kNaN},
        {-8.0, 1.0 / 3.0, kNaN},
        {-1.0, 0.5, kNaN},
        {-kSmallest, -0.5, kNaN},
    }};
    expectRows(powerOf, kRows);
}

TEST(ExactMathPower, TakesTheSignOfAnOddIntegerExponent) {
    constexpr std::array<std::array<double, 3>, 9> kRows{{
        {-2.0, 3.0, -8.0},
        {-2.0, 4.0, 16.0},
        {-2.0, -3.0, -0.125},
        {-1.0, 0x1.fffffffffffffp52, -1.0},
        {-1.0, 0x1p53, 1.0},
        {-1.0, kLargest, 1.0},
        {-10.0, 309.0, -kInfinity},
        {-10.0, -325.0, -0.0},
        {-10.0, -326.0, 0.0},
    }};
    expectRows(powerOf, kRows);
}

TEST(ExactMathPower, OverflowsAndUnderflowsForHugeExponents) {
    constexpr std::array<std::array<double, 3>, 8> kRows{{
        {2.0, kLargest, kInfinity},
        {2.0, -kLargest, 0.0},
        {0.5, kLargest, 0.0},
        {0.5, -kLargest, kInfinity},
        {1.0 + 0x1p-52, kLargest, kInfinity},
        {1.0 - 0x1p-53, kLargest, 0.0},
        {kLargest, kSmallest, 1.0},
        {kSmallest, -kSmallest, 1.0},
    }};
    expectRows(powerOf, kRows);
}

TEST(ExactMathArcCosine, NeverIncreasesBetweenNeighbours) {
    Generator generator;
    for (int i = 0; i < kRandomCount; ++i) {
        const double x = 2.0 * generator.unit() - 1.0;
        ASSERT_GE(arcCosine(x), arcCosine(std::nextafter(x, 2.0))) << std::hexfloat << x;
    }
}

TEST(ExactMathArcCosines, AreTheSameAsOneByOne) {
    std::vector<double> arguments = {0.0, -0.0,      0.5,  -0.5,       1.0,   -1.0,   std::nextafter(1.0, 0.0),
                                     1.5, kInfinity, kNaN, -kInfinity, -1e99, 1e-320, std::nextafter(0.5, 1.0)};
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        arguments.push_back(2.0 * generator.unit() - 1.0);
    }
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{127},
                                    std::size_t{128}, std::size_t{129}, std::size_t{257}, arguments.size()}) {
        std::vector<double> angles(arguments.begin(), arguments.begin() + static_cast<std::ptrdiff_t>(count));
        arcCosines(angles);
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(angles[i]), std::bit_cast<std::uint64_t>(arcCosine(arguments[i])))
                << std::hexfloat << arguments[i] << ", " << count << " values";
        }
    }
}

TEST(ExactMathArcTangent2, HasTheSymmetriesOfTheCircle) {
    Generator generator;
    for (int i = 0; i < kRandomCount; ++i) {
        const double x = generator.unit();
        const double y = generator.unit();
        const double angle = arcTangent2(y, x);
        ASSERT_EQ(arcTangent2(-y, x), -angle);
        ASSERT_EQ(arcTangent2(-y, -x), -arcTangent2(y, -x));
        ASSERT_EQ(arcTangent2(0x1p-300 * y, 0x1p-300 * x), angle);
        ASSERT_EQ(arcTangent2(0x1p1000 * y, 0x1p1000 * x), angle);
    }
}

#if defined(__linux__) && defined(__x86_64__) && LDBL_MANT_DIG == 64
/// The 64 bits of long double decide about all but a few arguments, for more of these than the checksums have.
template <typename Result, typename Reference>
void expectLongDouble(Function function, Draw draw, Reference reference) {
    Generator generator;
    int decided = 0;
    for (int i = 0; i < 5 * kRandomCount; ++i) {
        const Arguments arguments = draw(generator);
        const long double value = reference(static_cast<long double>(arguments.first), arguments.second);
        const Result lower = static_cast<Result>(value * (1.0L - 0x1p-61L));
        if (lower == static_cast<Result>(value * (1.0L + 0x1p-61L))) {
            ++decided;
            expectSame(function(arguments.first, arguments.second), lower, arguments.first, arguments.second);
        }
    }
    EXPECT_GT(decided, 4 * kRandomCount);
}

TEST(ExactMathLongDouble, AgreesWhereItCanDecide) {
    expectLongDouble<double>(arcCosineOf, drawArcCosine, [](long double x, long double) { return std::acos(x); });
    expectLongDouble<double>(arcTangent2Of, drawArcTangent2,
                             [](long double y, long double x) { return std::atan2(y, x); });
    expectLongDouble<float>(arcTangent2fOf, drawArcTangent2f,
                            [](long double y, long double x) { return std::atan2(y, x); });
    expectLongDouble<double>(powerOf, drawPower, [](long double x, long double y) { return std::pow(x, y); });
    expectLongDouble<float>(logarithmfOf, drawLogarithmf, [](long double x, long double) { return std::log(x); });
}
#endif

}  // namespace
