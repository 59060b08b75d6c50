// AIMessageComponent: what a thing tells those who come by, less and less surely.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "engine/systems/RequestHandle.h"

#include "foundation/ErrorCode.h"
#include "foundation/TimeTypes.h"
#include "object/reflection/Variant.h"

#include <utility>

class AIObserverComponent;

/// What a message holds, which decides how it is garbled.
enum MessageDataType
{
    MDT_STRING = 0,    ///< a text: its letters change places
    MDT_DIRECTION = 1, ///< a direction: it stays what it is
    MDT_POSITION = 2   ///< a place: it is lost at last
};

/// A message that an entity carries, under the component key "aiMessage".
///
/// Holds the true data and says how they decay: with age, with distance, outside of the observer's view and with his
/// memory; who asks gets a copy, the more garbled the lower its confidence. Each strength says how much of the
/// confidence its term may take, 0 to 1. Neither places nor ages are read yet: every question is asked at once and from
/// the message's own place, where the view cone has no angle, so that confidences are no numbers and data come back as
/// for a confidence that compares false with everything.
///
/// Creatures that see and hear have a PerceptionComponent instead.
class AIMessageComponent : public SimpleComponent
{
    KV_REFLECTED(AIMessageComponent)
public:
    AIMessageComponent() = default;

    /// Has no step of its own.
    void doFrame() override {}

    /// The confidence that an observer is told: the real one times the factor of falsehood. No number; see the class.
    float getConfidence(const Handle<AIObserverComponent> &observer, RequestHandle h) const;
    /// The data as an observer gets them; fails as `decayValue` does.
    ErrorReturn<Variant> getData(const Handle<AIObserverComponent> &observer, RequestHandle h) const;
    /// The confidence that the data are garbled by: the product of the terms of age, distance squared and plain, view
    /// and memory. No number; see the class.
    float calculateRealQFactor(const Handle<AIObserverComponent> &observer) const;
    /// A value as it is left at a confidence.
    ///
    /// A text has as many pairs of its bytes swapped by chance as half of its length times the confidence says, but no
    /// more than it has bytes. A direction is what it was. A place is what it was unless the confidence lies below 0.5,
    /// and otherwise the zero vector. What does not convert to its type gives the conversion's failure.
    ErrorReturn<Variant> decayValue(const Variant &v, MessageDataType t, float confidence) const;

    /// Factor on the confidence that an observer is told; above 1 a message seems surer than it is.
    float getFalseConfidenceFactor() const { return falseConfidenceFactor; }
    void setFalseConfidenceFactor(float val) { falseConfidenceFactor = val; }
    /// Age at which the term of age has decayed, seconds.
    float getTimeDecayTime() const { return timeDecayTime; }
    void setTimeDecayTime(float val) { timeDecayTime = val; }
    /// How much the age may take, 0 to 1.
    float getTimeDecayStrength() const { return timeDecayStrength; }
    void setTimeDecayStrength(float val) { timeDecayStrength = val; }
    /// Distance at which the plain term of distance has decayed, metres.
    float getLinearDistanceDecayDistance() const { return linearDistanceDecayDistance; }
    void setLinearDistanceDecayDistance(float val) { linearDistanceDecayDistance = val; }
    /// How much the plain term of distance may take, 0 to 1.
    float getLinearDistanceDecayStrength() const { return linearDistanceDecayStrength; }
    void setLinearDistanceDecayStrength(float val) { linearDistanceDecayStrength = val; }
    /// Squared distance at which the term of squared distance has decayed, square metres.
    float getSquareDistanceDecayDistance() const { return squareDistanceDecayDistance; }
    void setSquareDistanceDecayDistance(float val) { squareDistanceDecayDistance = val; }
    /// How much the term of squared distance may take, 0 to 1.
    float getSquareDistanceDecayStrength() const { return squareDistanceDecayStrength; }
    void setSquareDistanceDecayStrength(float val) { squareDistanceDecayStrength = val; }
    /// Cosine of the angle at which the view cone ends.
    float getViewConeDecayOuterAngleCos() const { return viewConeDecayOuterAngleCos; }
    void setViewConeDecayOuterAngleCos(float val) { viewConeDecayOuterAngleCos = val; }
    /// How much the view cone may take, 0 to 1.
    float getViewConeDecayStrength() const { return viewConeDecayStrength; }
    void setViewConeDecayStrength(float val) { viewConeDecayStrength = val; }
    /// How much the observer's memory may take, 0 to 1.
    float getAgentMemoryDecayStrength() const { return agentMemoryDecayStrength; }
    void setAgentMemoryDecayStrength(float val) { agentMemoryDecayStrength = val; }
    /// The true data.
    Variant getOriginalData() const { return originalData; }
    void setOriginalData(Variant val) { originalData = std::move(val); }
    /// When the message began, seconds of the level's time.
    Seconds getStartTime() const { return startTime; }
    void setStartTime(Seconds val) { startTime = val; }
    /// What the data are.
    MessageDataType getDataType() const { return dataType; }
    void setDataType(MessageDataType val) { dataType = val; }

private:
    float viewTerm(float squaredDistance) const;

    float falseConfidenceFactor = 1.f;
    float timeDecayTime = 30.f; ///< seconds
    float timeDecayStrength = 0.f;
    float linearDistanceDecayDistance = 20.f; ///< metres
    float linearDistanceDecayStrength = 0.f;
    float squareDistanceDecayDistance = 400.f; ///< square metres
    float squareDistanceDecayStrength = 0.f;
    float viewConeDecayOuterAngleCos = 0.f;
    float viewConeDecayStrength = 0.f;
    float agentMemoryDecayStrength = 0.f;
    Variant originalData;
    Seconds startTime = 0;
    MessageDataType dataType = MDT_STRING;
};
