// SPDX-License-Identifier: MIT
// sRGB out of the square root of light; included once per vector target. Any
// thread; it owns nothing.
#if defined(PLATFORM_TILE_ENCODING_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_ENCODING_INL
#undef PLATFORM_TILE_ENCODING_INL
#else
#define PLATFORM_TILE_ENCODING_INL
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace encoding = hwy::HWY_NAMESPACE;

// 255 × the encoded light of a root between 0 and 1, to a twelfth of a step: a
// polynomial through the curve's Chebyshev points, and the straight part below.
template <class D>
HWY_INLINE encoding::Vec<D> encoded(D d, encoding::Vec<D> root) {
    // Written out: a loop's numbers would be loaded one by one.
    const auto next = [&](encoding::Vec<D> sum, float coefficient) HWY_ATTR {
        return encoding::Add(encoding::Mul(sum, root), encoding::Set(d, coefficient));
    };
    auto sum = encoding::Set(d, -149.08811694351505F);
    sum = next(sum, 573.7156661028889F);
    sum = next(sum, -906.4323739835082F);
    sum = next(sum, 773.6477840164332F);
    sum = next(sum, -419.74738251019784F);
    sum = next(sum, 393.31516679808084F);
    sum = next(sum, -10.42146748676575F);
    const auto straight =
        encoding::Mul(encoding::Mul(root, root), encoding::Set(d, 255.0F * 12.92F));
    // 0.0559547 is where the two meet.
    const auto bent = encoding::Gt(root, encoding::Set(d, 0.0559547F));
    return encoding::Min(encoding::IfThenElse(bent, sum, straight), encoding::Set(d, 255.0F));
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
