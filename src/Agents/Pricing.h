#pragma once

#include <string_view>

/// What a model's tokens would cost at the published prices of its API.
namespace kippo::Pricing {

/// US dollars per million tokens.
struct Price {
    double input = 0;
    double output = 0;
    double cacheWrite = 0;
    double cacheRead = 0;

    bool operator==(const Price&) const = default;
};

/// The price of a model by its name in transcripts, such as "claude-opus-4-5-20251101"; unknown models have a price
/// too.
Price price(std::string_view model);

} // namespace kippo::Pricing
