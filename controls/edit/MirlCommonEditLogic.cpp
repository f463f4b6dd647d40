#include "MirlCommonEditLogic.h"

#include <climits>

namespace MIRL {

int SpinStep(int position, int step, int delta)
{
    // Every operand fits in 32 bits, so the product and the sum fit in 64.
    const long long next = static_cast<long long>(position) + static_cast<long long>(step) * delta;
    if (next < 0) {
        return 0;
    }
    return next > INT_MAX ? INT_MAX : static_cast<int>(next);
}

int IsAllDigits(const wchar_t *text)
{
    if (text == NULL || *text == L'\0') {
        return 0;
    }
    for (; *text != L'\0'; ++text) {
        if (*text < L'0' || *text > L'9') {
            return 0;
        }
    }
    return 1;
}

CommonEditFaceParts CommonEditFace(int clientRight, int clientBottom, int leftWidth, int rightWidth)
{
    // 64-bit sums: a face of any size gives a rectangle, never an overflow.
    auto clamp = [](long long value) -> LONG {
        return static_cast<LONG>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
    };
    CommonEditFaceParts parts;
    parts.left = RECT{0, 0, leftWidth, clientBottom};
    parts.right = RECT{clamp(static_cast<long long>(clientRight) - rightWidth), 0, rightWidth, clientBottom};
    parts.middle = RECT{clamp(static_cast<long long>(leftWidth) - 1), 0,
                        clamp(static_cast<long long>(clientRight) - rightWidth - leftWidth + 5), clientBottom};
    return parts;
}

float CentredOrigin(int extent, float measured)
{
    return (static_cast<float>(extent) - measured) * 0.5f;
}

} // namespace MIRL

namespace MIRL {

int ParseDigits(const wchar_t *text)
{
    if (!IsAllDigits(text)) {
        return 0;
    }
    long long value = 0;
    for (; *text != L'\0'; ++text) {
        value = value * 10 + (*text - L'0');
        if (value > INT_MAX) {
            return INT_MAX;
        }
    }
    return static_cast<int>(value);
}

} // namespace MIRL
