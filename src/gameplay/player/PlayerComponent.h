// PlayerComponent: what keys and mouse make of the player's body, breath, light and mind.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "physics/volumes/LitByVolumes.h"

#include "foundation/Quaternion.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"
#include "object/tree/ReflectorPtr.h"

#include <bitset>
#include <map>
#include <vector>

class BoundingVolume;
class Entity;
class PhysicsComponent;
class RigidBody;
class SoundComponent;
class TransformComponent;

/// The first-person character, under the component key "player" of the level's entity "Player".
///
/// Turns the messages of keyboard and mouse into forces on the body and turns of the view, keeps the budget of sprinting
/// and the flashlight's batteries, lets the mind hold or give way, and finds what the player points at. The entity has
/// besides: "transform", "physics" (a `PlayerPhysics`), "boundingVolume" (BV_PLAYER), "sound", the child "camera" with
/// "transform", "viewer" and "parentFollower" (a `TransformOffsetComponent`), and the child "reticle" with "graphics2".
/// A part that is missing is told in the log, once, and what it is for is left out.
///
/// Metres, newtons, radians; seconds of the level's timer "master".
class PlayerComponent : public SimpleComponent, public ILitByVolumes
{
    KV_REFLECTED(PlayerComponent)
public:
    /// What a held key asks for.
    enum MovementType
    {
        MT_Left = 0,  ///< no key sets it
        MT_Right = 1, ///< no key sets it
        MT_Down = 2,  ///< backwards
        MT_Up = 3,    ///< ahead
        MT_StrafeRight = 4,
        MT_StrafeLeft = 5,
        MT_Sprint = 6,
        MT_NumDirections = 7 ///< count
    };
    using InputContainer = std::vector<bool>;

    PlayerComponent();

    /// Begins to hear keyboard and mouse, and starts the sounds of breath and whispers.
    void onLoadComplete() override;
    /// Moves and turns the player, spends battery and mind, and finds what the player points at.
    void doFrame() override;
    /// Notes the light that there is where the player's eyes are.
    void reachedByLight(BoundingVolume &light) override;

    /// Whether a key asks for a step: ahead, back or sideways.
    bool isMoving() const;
    /// Whether the player moves and asks to sprint.
    bool isSprinting() const;
    /// Whether the feet take the steps that the keys ask for: who is held by a wall, or falls, does not walk.
    ///
    /// Follows the keys alone where the body is not surefooted.
    bool isWalking() const { return isMoving() && feetMove; }
    /// Whether a key asks for a movement; what is no movement is an assertion, and false.
    bool checkMovement(MovementType type) const;
    /// Whether there is breath left to sprint: true while the player may still, the inverse of the name.
    bool isFatigued() const;

    /// Sets the sprint time used up, seconds, and lets the breath be heard so.
    void setFatigue(float fat);
    double getFatigue() const { return fatigue; }
    /// Lets the player be moved by keys and mouse, or stops both body and view.
    void setUseInput(bool useIn);
    bool getUseInput() const { return useInput; }
    /// Share of a smooth step over a range of `audioSanity`: eased in up to t1, straight up to t2, eased out behind.
    ///
    /// @param t1        share of the range at which the ease ends, 0..1
    /// @param t2        share of the range at which the other one begins
    /// @param minValue  `audioSanity` at and below which the result is 0
    /// @param maxValue  `audioSanity` at and above which the result is 1
    float getSanityValue(float t1, float t2, float minValue, float maxValue) const;

    /// Takes the flashlight into the hand, burning, with a full battery; nothing happens for one who has one.
    /// @param flashlight  body of the flashlight's entity
    void pickupFlashlight(Handle<PhysicsComponent> flashlight);
    /// Adds a spare battery.
    void addBattery();

    /// Whether the player holds a flashlight; from then on battery and mind count.
    bool getHasFlashlight() const { return hasFlashlight; }
    bool isFlashlightOn() const { return flashlightOn; }
    /// Switches the flashlight and tells nobody.
    void setFlashlightOn(bool on) { flashlightOn = on; }
    /// Whether a battery is being put in.
    bool isCharging() const { return charging; }
    bool isCrouched() const { return crouched; }
    /// Spare batteries.
    unsigned getBatteries() const { return batteries; }
    void setBatteries(unsigned count);
    /// Life left in the battery in use, seconds.
    double getCurrBatteryTimeLeft() const { return currBatteryLife; }
    /// Sets the life left in the battery in use, from 0 to that of a fresh one; what is no number changes nothing.
    void setCurrBatteryTimeLeft(double seconds);
    /// Takes some life of the battery in use, seconds, besides what burning takes; what is no number or below 0 takes none.
    void drainBattery(double seconds);
    /// Life of a battery, seconds.
    double getBatteryLifetime() const { return batteryLifetime; }
    void setBatteryLifetime(double val);
    /// Time of a battery change, seconds.
    double getBatteryRechargeTime() const { return batteryRechargeTime; }
    void setBatteryRechargeTime(double val);

    /// Whether the blob touches the player, which costs 4 percent of the mind a second.
    bool getBlobColliding() const { return blobColliding; }
    void setBlobColliding(bool val) { blobColliding = val; }
    /// What light does to the mind in this frame: half of it in percent a second.
    float getLightSanityInfluence() const { return lightSanityInfluence; }
    void setLightSanityInfluence(float inf);
    /// Soundness of the mind as the picture shows it, percent; 100 sees what is there.
    float getSanity() const { return sanity; }
    void setSanity(float val);
    /// Soundness of the mind by which the view narrows, percent.
    float getAudioSanity() const { return audioSanity; }
    void setAudioSanity(float val);

    /// Force of a step, newtons.
    float getMovementSpeed() const { return movementSpeed; }
    void setMovementSpeed(float val);
    /// Factor of the force in a sprint; 0.6 of it counts when the breath is spent.
    float getSprintMultiplier() const { return sprintMultiplier; }
    void setSprintMultiplier(float val);
    /// Longest sprint, seconds.
    double getSprintLength() const { return sprintLength; }
    void setSprintLength(double val);
    /// Time in which a whole sprint is recovered, seconds.
    double getSprintRecoveryTime() const { return sprintRecoveryTime; }
    void setSprintRecoveryTime(double val);
    /// Damping of the body that no key moves, 0..1: the part of its velocity left after a second.
    float getStationaryDamping() const { return stationaryDamping; }
    void setStationaryDamping(float val);
    /// Damping of the body that a key moves, 0..1.
    float getMobileDamping() const { return mobileDamping; }
    void setMobileDamping(float val);
    /// Radians of a turn for a motion of the mouse by the longer side of the window.
    float getMouseSensitivity() const { return mouseSensitivity; }
    void setMouseSensitivity(float val);
    /// Radians a second by which the head bobs.
    float getHeadbobRate() const { return headbobRate; }
    void setHeadbobRate(float val);
    /// What the floor is made of that the player walks on, as the names of the events of steps have it: "Wood".
    String getFloorMaterial() const { return floorMaterial; }
    void setFloorMaterial(const String &val) { floorMaterial = val; }
    /// Says what a floor is made of that wears a picture: `nameFloor("boardsDiffuse", "Wood")`.
    void nameFloor(const String &textureName, const String &material);
    /// Takes the material of what is drawn under the feet, if its picture was named; stays with the last one if not.
    /// @cost a segment of a metre; allocates nothing
    void feelFloor();
    /// A setting that moves nothing.
    float getSpinTorqueForce() const { return spinTorqueForce; }
    void setSpinTorqueForce(float val);
    /// Scale of a turn of nothing.
    float getSpinRate() const { return spinRate; }
    void setSpinRate(float val);
    /// Pitch of the view so far, radians; ahead is 0, down is positive.
    float getRotationLimiter() const { return rotationLimiter; }
    /// Pitches the view to an angle within its limits, radians.
    void setRotationLimiter(float val);
    /// The volume that the player points at and can use; invalid for none.
    Handle<BoundingVolume> getInteractor() const { return interactor; }
    /// What is to be called at the player's death, by whoever brings it about.
    ReflectorPtr getDeathFunc() const { return deathFunc; }
    void setDeathFunc(ReflectorPtr val) { deathFunc = val; }

    /// Has a key do what another one is for: of those that move a player, W, A, S, D, Shift, Ctrl, Space, E, F and R.
    /// @param key        virtual-key code, 1..255
    /// @param standsFor  code of the key whose part it takes, 0 for none; each key stands for itself at first
    void bindKey(int key, int standsFor);
    /// Has no key stand for anything, so that keys can be bound anew.
    void freeKeys();
    /// Buttons of the mouse that use what is pointed at, a bit for each, 1 for the left one; all of them at first.
    unsigned getUseButtons() const { return useButtons; }
    void setUseButtons(unsigned val) { useButtons = val; }
    /// Whether what can be used is reached past all that cannot, walls too; without it what is solid hides it.
    bool getReachesThrough() const { return reachesThrough; }
    void setReachesThrough(bool val) { reachesThrough = val; }
    /// Factors of the mouse's way to the side and up and down; a negative one turns it round.
    float getLookSideways() const { return lookSideways; }
    void setLookSideways(float val);
    float getLookUpright() const { return lookUpright; }
    void setLookUpright(float val);
    /// Radians a second that the view turns by while the right stick of the pad stands at its end; below 0 the other way
    /// round.
    float getStickTurnRate() const { return stickTurnRate; }
    void setStickTurnRate(float val);
    /// Factor of that up and down; a negative one turns it round.
    float getStickUpright() const { return stickUpright; }
    void setStickUpright(float val);
    /// Part of the whole bob that the view shows, 0..1.
    float getBobAmount() const { return bobAmount; }
    void setBobAmount(float val);

    /// How far the present step has come, 0..1, as whoever counts the steps has told; -1 where nobody does.
    float getStride() const { return stride; }
    /// How many steps were taken.
    int getStepCount() const { return stepCount; }
    void setStride(float part);
    void countStep() { ++stepCount; }

    void handleKeyMessage(const ReflectorPtr &messageType, int key);
    void handleMouseMessage(const ReflectorPtr &messageType, float x, float y);
    void handleMouseClick(const ReflectorPtr &messageType, unsigned click, float x, float y);
    /// Takes where a stick of the first pad stands: the left one walks, the right one looks, until the next frame.
    void handleStickMessage(const ReflectorPtr &messageType, float x, float y, unsigned pad);

private:
    /// What belongs to a player, for the log that misses it.
    enum Part
    {
        TRANSFORM,
        PHYSICS,
        VOLUME,
        SOUND,
        CAMERA,
        CAMERA_FOLLOWER,
        VIEWER,
        RETICLE,
        BATTERY_COUNT,
        NUM_PARTS
    };
    /// The part, as the class that it must be; null where it is missing, which the log is told once.
    template <class Component>
    Component *part(Part which)
    {
        Component *const found = handle_cast<Component>(findPart(which)).lookup().ptr;
        if (!found)
            tellMissing(which);
        return found;
    }
    Handle<AbstractComponent> findPart(Part which);
    void tellMissing(Part which);
    TransformComponent *transform();
    RigidBody *body();
    SoundComponent *sound();
    bool isWithin(const char *property, double val, double least, double most) const;
    void take(const char *property, float &setting, float val, float least, float most) const;
    void take(const char *property, double &setting, double val) const;

    void watchFeet(const RigidBody &physics, const TransformComponent &transform, Seconds frameTime);
    void updateMovement(RigidBody &physics, TransformComponent &transform, Seconds frameTime);
    Vec4 walkingForce() const;
    void tellBreath();
    float sprint(Seconds frameTime);
    void updateMouseLook(RigidBody &physics, TransformComponent &transform, Seconds frameTime);
    void limitViewRotation(float delta, Seconds frameTime);
    void spendBattery(Seconds frameTime);
    void updateSanity(Seconds frameTime);
    void findInteractor();
    Handle<BoundingVolume> pointedAt(TransformComponent &camera);

    void forgetOldSticks();
    bool doesStickAsk(MovementType type) const;
    float stickTurn(Seconds frameTime) const;
    int meaningOf(int key) const;
    bool isHeldByAnother(int key) const;
    void handleKeyDown(int key);
    void handleKeyUp(int key);
    void beginSprint();
    void toggleCrouch();
    void toggleFlashlight();
    void useInteractor();
    void useBattery();
    void showBatteries();
    void hangFlashlight(Entity &flashlight);

    unsigned batteries = 0;           ///< spare ones
    float lightSanityInfluence = 0.f; ///< of this frame
    bool hasFlashlight = false;
    bool charging = false; ///< a battery is being put in
    bool flashlightOn = false;
    bool crouched = false;
    bool blobColliding = false;   ///< the blob touches the player
    bool pickedUpBattery = false; ///< stays false: each pickup is explained
    float movementSpeed = 7.f;    ///< newtons
    float spinTorqueForce = 0.01f;
    float spinRate = 5.f;
    float stationaryDamping = 0.01f; ///< velocity kept per second
    float mobileDamping = 0.2f;      ///< velocity kept per second
    float rotationLimiter = 0.f;     ///< radians
    float mouseMoveX = 0.f;          ///< since the last frame, parts of the longer side of the window
    float mouseMoveY = 0.f;
    float mouseSensitivity = 12.f; ///< radians for the longer side of the window
    float sprintMultiplier = 3.5f;
    float headbobRate = 0.f;          ///< radians a second
    float sanity = 100.f;             ///< percent
    float audioSanity = 100.f;        ///< percent
    double fatigue = 0.0;             ///< seconds of sprint used up
    double sprintRecoveryTime = 2.7;  ///< seconds
    double batteryRechargeTime = 0.5; ///< seconds
    double sprintLength = 2.0;        ///< seconds
    double batteryLifetime = 120.0;   ///< seconds
    double currBatteryLife = 0.0;     ///< seconds
    Quaternion lookRotQuaternion;     ///< pitch of this frame
    Handle<BoundingVolume> interactor;
    InputContainer movementKeys;
    bool useInput = true;
    String floorMaterial = SCS("Stone");
    std::map<String, String> floorNames; ///< materials by the pictures that floors of them wear
    ReflectorPtr deathFunc;
    static constexpr int KEYS = 256;
    unsigned char keyMeanings[KEYS]; ///< by virtual-key code; 0 for none
    std::bitset<KEYS> heldKeys;
    unsigned useButtons = ~0u;
    bool reachesThrough = true;
    float lookSideways = 1.f, lookUpright = 1.f;
    Vec4 walkStick, lookStick;  ///< x to the right, y ahead or up, 0..1, as they answer
    bool sticksAreNew = false;  ///< told since the last frame
    float stickTurnRate = 2.8f; ///< radians a second
    float stickUpright = 0.75f;
    float bobAmount = 1.f; ///< 0..1
    bool feetMove = true;
    Vec4 lastPlace;      ///< of the frame before, metres
    float stride = -1.f; ///< 0..1, or -1
    int stepCount = 0;
    bool litThisFrame = false;     ///< the light at the eyes is known
    unsigned missingPartsTold = 0; ///< bits by Part
};
