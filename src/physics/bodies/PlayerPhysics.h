// PlayerPhysics: the body of the player, and the states of the game that end or begin with it.
#pragma once

#include "physics/bodies/Footing.h"
#include "physics/bodies/RigidBody.h"

#include <vector>

/// The player's rigid body, which contacts and torques do not turn, under the component key "physics".
///
/// Metres, seconds, newtons, as for every body. Becomes the body of its level's player when its load completes, unless
/// another one is that already. Fades the picture in where the level opens and out where the player dies, over
/// `dissolveAmount` of the manager "graphics2", by one factor a frame. Who moves it is the component "player" beside it.
/// A surefooted one goes as feet do; another one is pushed over the ground like a crate.
class PlayerPhysics : public RigidBody
{
    KV_REFLECTED(PlayerPhysics)
public:
    /// A direction that is asked for by a key.
    enum Direction
    {
        UP = 0,
        DOWN = 1,
        LEFT = 2,
        RIGHT = 3,
        STRAFE_RIGHT = 4,
        STRAFE_LEFT = 5,
        NUM_DIRECTIONS = 6 ///< count
    };
    /// A direction that is asked for by a button of a pad.
    enum DirectionsXBOX
    {
        X_UP = 0,
        X_DOWN = 1,
        X_LEFT = 2,
        X_RIGHT = 3,
        X_STRAFE_RIGHT = 4,
        X_STRAFE_LEFT = 5,
        X_NUM_DIRECTIONS = 6 ///< count
    };
    /// How a weapon fires.
    enum FireMode
    {
        FM_BURST = 0,
        FM_SHOTGUN = 1,
        FM_PISTOL = 2,
        NUM_FIRE_MODES = 3 ///< count
    };

    /// A door that is to be opened or closed.
    struct DoorInfo
    {
        Handle<Object> door; ///< its body or its entity
        bool open;           ///< or else closed
    };
    /// A trigger that the player has touched, as it was touched.
    struct TouchedTrigger
    {
        Handle<BoundingVolume> volume;
        Vec4 place;  ///< native space, metres
        Vec4 normal; ///< of the contact
        float depth; ///< metres
    };

    PlayerPhysics() = default;

    /// Becomes the body of its level's player; a second one in a level is told in the log and is a body like others.
    void onLoadComplete() override;
    using RigidBody::doFrame;
    /// Lets times run out and the picture fade, works off doors, and moves the body unless the player is dead.
    ///
    /// A game that is won must have ended before: the step of a body that has won is a critical assertion.
    void doFrame(Seconds frameTime) override;

    /// Inverse inertia along the body's own axes: nothing turns it.
    const Matrix4 &getInverseInertia() const override;
    /// Inverse inertia in native space: nothing turns it.
    const Matrix4 &getInverseInertiaWorld() const override;

    void addShadow(Handle<PhysicsComponent> shadow) override;
    /// Shadows that stand in the level since the last step.
    const std::vector<Handle<PhysicsComponent>> &getShadowList() const { return shadowList; }
    void takeContact(const Collision &contact, const BoundingVolume &trigger) override;
    /// Triggers that the body has touched since its last step.
    const std::vector<TouchedTrigger> &getTouchedTriggers() const { return touchedTriggers; }
    /// How many triggers the body has touched since its last step.
    int countTouchedTriggers() const { return static_cast<int>(touchedTriggers.size()); }
    /// Has a door opened or closed by the next step.
    void addDoor(Handle<Object> door, bool open);

    /// Turns the vertical axis of the mouse round by the text "true", or back by "false".
    void setInvert(String state);
    /// Turns the vertical axis of the mouse round, or back.
    void setInvert(bool state);
    /// Sign of the vertical axis of the mouse, 1 or -1.
    float getVerticalSign() const { return negOne; }
    /// Whether a blow meets the player: a coin is flipped.
    bool determineHit();
    /// Whether the flashlight is held and shines.
    bool getFlashlightStatus() const { return hasFlashlight; }
    void setFlashlightStatus(bool val) { hasFlashlight = val; }

    /// Shows or hides what stands in the level's "Hud".
    void displayHUD(bool visible);
    /// Seconds for which the hud is still shown.
    double getHudDisplayed() const { return hudDisplayed; }
    /// Has the hud hidden after some seconds.
    void setHudDisplayed(double seconds);
    /// Gives a picture of the hud another texture.
    /// @param texture  name of a file of the texture folder
    /// @param type     "battery" for the picture "EntQuad2", anything else for "EntQuad1"
    void changeHUDTexture(String texture, String type);
    /// Seconds for which nothing can hurt the player.
    float getInvincibilityTime() const { return invincibilityTime; }
    void setInvincibilityTime(float seconds);

    /// Whether the picture is fading in.
    bool getOpening() const { return opening; }
    void setOpening(bool op) { opening = op; }
    /// Whether the picture is fading out over a dead player, whose body stands still.
    bool getDead() const { return dead; }
    /// Begins the fade; it grows from what the picture is dissolved already, so that must be more than 0.
    void setDead(bool dead_) { dead = dead_; }
    /// The menu of the level, a `MenuComponent` at "PauseMenu/menu", as it stood when the last fade over a dead player had
    /// come to its end; invalid before, and in a level without one.
    Handle<Object> getPauseMenu() const { return pauseMenu; }
    /// Whether the game is won; the body's next step then ends the process.
    bool getWon() const { return won; }
    void setWon(bool w) { won = w; }

    /// Longest time that the body is moved in one piece, seconds; 0 moves it once a frame.
    ///
    /// Forces and damping give the same way at every frame rate where frames are divided into equal pieces.
    float getLongestStep() const { return longestStep; }
    void setLongestStep(float seconds);

    /// Whether the body goes as feet do: up and down slopes by the speed that it has on level ground, and down steps and
    /// over edges without a hop, and round the edge of a doorway that it has missed by a little; it stands on a slope, and
    /// falls as fast as what nothing brakes.
    bool getSurefooted() const { return surefooted; }
    void setSurefooted(bool val) { surefooted = val; }
    /// Whether a surefooted body stands on something that is no steeper than 50 degrees.
    bool isOnGround() const { return footing.isOnGround(); }
    /// Normal of the ground that a surefooted body stands on; straight up in the air.
    Vec4 getGroundNormal() const { return footing.getNormal(); }
    /// How often a surefooted body has come down from the air.
    int getLandings() const { return landings; }
    /// Metres a second that it came down with the last time.
    float getLandingSpeed() const { return landingSpeed; }
    /// Is told of a contact, by its normal towards the body.
    void touch(const Vec4 &normal) { footing.touch(normal); }
    /// Notes that the body has met another one that gives way, by the contact's normal and how fast that goes now.
    void meet(const Vec4 &normal, const Vec4 &itsVelocity);

    /// Whether a direction is asked for by its key.
    bool isKeyDown(Direction direction) const;
    void setKeyDown(Direction direction, bool down);
    /// Whether a direction is asked for by its button.
    bool isButtonDown(DirectionsXBOX direction) const;
    void setButtonDown(DirectionsXBOX direction, bool down);
    /// Where the stick of the pad stands: x to the right, y up, -1 to 1.
    Vec4 getStick() const { return Vec4(joyX, joyY, 0.f, 0.f); }
    void setStick(Vec4 val);

private:
    void runOutTimes(Seconds frameTime);
    void fadeIn();
    void fadeOut();
    void findPauseMenu();
    bool readDissolve(float &amount);
    void writeDissolve(float amount);
    void workOffDoors();
    void walk(Seconds frameTime);
    void keepUp();
    void passEdges();
    void noteLanding(bool stood);
    void keepToGround();
    void moveInPieces(Seconds frameTime);
    Vec4 forceOnGround() const;
    void fallFreely(Seconds seconds);

    bool keys[NUM_DIRECTIONS] = {};
    bool xBtns[X_NUM_DIRECTIONS] = {};
    float joyX = 0.f;              ///< -1 to 1
    float joyY = 0.f;              ///< -1 to 1
    float invincibilityTime = 0.f; ///< seconds left
    bool hasFlashlight = false;    ///< held, and it shines
    float negOne = 1.f;            ///< sign of the vertical axis of the mouse
    std::vector<Handle<PhysicsComponent>> shadowList;
    std::vector<TouchedTrigger> touchedTriggers;
    std::vector<DoorInfo> doorInteractList; ///< for the next step
    double hudDisplayed = 0.0;              ///< seconds left
    bool opening = false;
    bool dead = false;
    Handle<Object> pauseMenu; ///< invalid until somebody has died
    bool won = false;
    float longestStep = 0.f; ///< seconds; 0: a frame
    bool surefooted = false;
    Footing footing;
    Vec4 pushed; ///< velocity of what was met in the last step, straight away from the body, m/s; zero for nothing
    int landings = 0;
    float landingSpeed = 0.f; ///< metres a second
    float fallingSpeed = 0.f; ///< metres a second downwards, in the air
};
