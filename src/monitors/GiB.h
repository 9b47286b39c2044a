#pragma once

/// Bytes to GiB: a multiplication by 2^-30, exact for every power-of-two size.
constexpr double bytesPerGiBInverse = 9.313225746154785e-10;

constexpr double gibFromBytes(double bytes) {
    return bytes * bytesPerGiBInverse;
}
