#pragma once

#include <chrono>

namespace kippo {

/// A span of time in seconds, with fraction.
using Seconds = std::chrono::duration<double>;

/// A moment of wall-clock time: seconds since 1970-01-01 00:00:00 UTC, with fraction.
using Date = std::chrono::time_point<std::chrono::system_clock, Seconds>;

/// Earlier than any moment that anything here records.
inline constexpr Date distantPast{Seconds{-62135596800.0}};

/// `seconds` since 1970-01-01 00:00:00 UTC as a date.
constexpr Date dateFromUnix(double seconds) { return Date{Seconds{seconds}}; }

/// Seconds since 1970-01-01 00:00:00 UTC.
constexpr double unixSeconds(Date date) { return date.time_since_epoch().count(); }

/// Seconds between 1970-01-01 and 2001-01-01, the epoch of the dates in `defaults.json`.
inline constexpr double referenceEpoch = 978307200.0;

/// Seconds since 2001-01-01 00:00:00 UTC, the form in which dates are kept in `defaults.json`.
constexpr double referenceSeconds(Date date) { return unixSeconds(date) - referenceEpoch; }

/// The inverse of `referenceSeconds`.
constexpr Date dateFromReference(double seconds) { return dateFromUnix(seconds + referenceEpoch); }

} // namespace kippo
