#include "ai/knowledge/AIMessageComponent.h"

#include "ai/knowledge/AIObserverComponent.h"

#include "foundation/Random.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace
{

/// What a decay leaves of the confidence.
/// @param decayed   share of the decay, 0 at its beginning
/// @param strength  how much it may take
float termOf(float decayed, float strength)
{
    return (1.f - decayed) * strength + (1.f - strength);
}

/// How many swaps a text of some bytes gets: one for each step by which the product can be counted down above 0.
std::int64_t countSwaps(std::size_t bytes, float confidence)
{
    const float swaps = static_cast<float>(bytes) * confidence * 0.5f;
    if (!(swaps > 0.f))
        return 0;
    // More swaps than bytes garble nothing further, and a confidence without an end has none.
    return static_cast<std::int64_t>(std::ceil(std::min(swaps, static_cast<float>(bytes))));
}

String scrambled(const String &text, float confidence)
{
    std::string bytes(text.toCString(), text.size());
    const auto length = static_cast<int>(std::min<std::size_t>(bytes.size(), INT32_MAX));
    for (std::int64_t left = countSwaps(bytes.size(), confidence); left > 0; --left)
    {
        const int i = engineRand() % length, j = engineRand() % length;
        if (i != j)
            std::swap(bytes[static_cast<std::size_t>(i)], bytes[static_cast<std::size_t>(j)]);
    }
    return String::copyFrom(bytes.c_str(), bytes.size());
}

/// A value as one of some type, or why it is none.
template <class T>
ErrorReturn<Variant> converted(const Variant &v)
{
    const ErrorReturn<T> value = v.get<T>();
    return value.succeeded() ? ErrorReturn<Variant>(Variant(value.value)) : ErrorReturn<Variant>(value.code);
}

} // namespace

float AIMessageComponent::getConfidence(const Handle<AIObserverComponent> &observer, RequestHandle) const
{
    return calculateRealQFactor(observer) * falseConfidenceFactor;
}

ErrorReturn<Variant> AIMessageComponent::getData(const Handle<AIObserverComponent> &observer, RequestHandle) const
{
    return decayValue(originalData, dataType, calculateRealQFactor(observer));
}

float AIMessageComponent::calculateRealQFactor(const Handle<AIObserverComponent> &) const
{
    // The observer is not looked at: he stands where the message is, at the moment that it began, and remembers nothing.
    constexpr float age = 0.f, squaredDistance = 0.f, remembered = 0.f;
    const float distance = std::sqrt(squaredDistance);
    return termOf(age / timeDecayTime, timeDecayStrength) *
           termOf(squaredDistance / squareDistanceDecayDistance, squareDistanceDecayStrength) *
           termOf(std::max(0.f, distance) / linearDistanceDecayDistance, linearDistanceDecayStrength) *
           viewTerm(squaredDistance) * ((1.f - agentMemoryDecayStrength) + agentMemoryDecayStrength * remembered);
}

/// What is left by how far the message lies from the middle of the view: it rises inside the cone.
float AIMessageComponent::viewTerm(float squaredDistance) const
{
    constexpr float dot = 0.f; // of the way to the message and the observer's direction
    const float cosine = dot / std::sqrt(squaredDistance);
    const float seen = (cosine + cosine) * 0.f + cosine;
    // In this order the greater of the two is no number where one of them is none.
    const float inside = std::max(seen - viewConeDecayOuterAngleCos, 0.f) / (1.f - viewConeDecayOuterAngleCos);
    return inside * viewConeDecayStrength + (1.f - viewConeDecayStrength);
}

ErrorReturn<Variant> AIMessageComponent::decayValue(const Variant &v, MessageDataType t, float confidence) const
{
    switch (t)
    {
    case MDT_STRING:
    {
        const ErrorReturn<String> text = v.get<String>();
        if (!text.succeeded())
            return text.code;
        return Variant(scrambled(text.value, confidence));
    }
    case MDT_DIRECTION:
        return converted<Vec4>(v);
    case MDT_POSITION:
        return confidence < 0.5f ? decayValue(Variant(Vec4()), MDT_DIRECTION, confidence * 1.5f)
                                 : ErrorReturn<Variant>(v);
    }
    return ErrorCode(ErrorCode::NOT_IMPLEMENTED, 0);
}
