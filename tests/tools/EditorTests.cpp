#include "tools/editor/EditorComponent.h"
#include "tools/editor/EditorLabels.h"
#include "tools/editor/EditorSystem.h"

#include "support/AllocationCount.h"
#include "support/TestLevel.h"

#include "assets/building/MeshBuilder.h"
#include "assets/models/DynamicMeshAsset.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "object/python/PythonCalls.h"
#include "physics/bodies/RigidBody.h"
#include "platform/input/InputMessages.h"
#include "platform/input/InputSystem.h"
#include "platform/window/WindowSystem2.h"
#include "port/win32/VirtualKeys.h"
#include "rendering/device/GraphicsSystem2.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/drawn/UnitMeshes.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/ViewerComponent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace
{
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

/// A level in a window of 640 x 360 whose camera stands at the origin and looks along +z, with an open editor.
class EditorWorld : public testing::Test
{
protected:
    EditorWorld()
    {
        setenv("KAVEL_HEADLESS", "1", 1);
        initPython(); // the viewer of the screen is built by a script
        getSystemDeref<WindowSystem2>().setWindowedSize(640, 360);
        getSystemDeref<InputSystem>();
        camera = level.entity("eye");
        level.transform(camera);
        level.component<ViewerComponent>(camera, "viewer");
        graphicsOf(level.level).pushCamera(camera);
        editor = makeEditor();
        editor->setMarksShown(false);
        editor->setSnapToGrid(false);
        editor->open();
    }

    GraphicsManager2 &graphicsOf(Handle<Coordinator> of)
    {
        return *handle_cast<GraphicsManager2>(of.lookup()->getManager(SCS("graphics2"))).lookup();
    }
    EditorComponent *makeEditor(Handle<Object> below = Handle<Object>())
    {
        return level.component<EditorComponent>(level.entity(".Editor", below), "editor").lookup().ptr;
    }
    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            level.frame();
    }
    /// An entity that draws a mesh at a place.
    Handle<Entity> drawn(const char *name, Vec4 place, const MeshBuilder &shape, Handle<Object> parent = {})
    {
        const Handle<Entity> entity = level.entity(name, parent);
        level.transform(entity, place);
        auto &model = *level.component<ModelGraphicsComponent2>(entity, "graphics2").lookup();
        const Handle<DynamicMeshAsset> mesh = makeDynamicMesh(model);
        mesh.lookup()->setMeshData(shape);
        model.setMesh(mesh);
        model.setLayer(SceneGraph::WORLD_UNCONDITIONAL);
        model.GraphicsComponent2::onLoadComplete();
        return entity;
    }
    static MeshBuilder box(float half)
    {
        MeshBuilder shape;
        shape.addBox(Vec4(half, half, half, 0));
        return shape;
    }
    Handle<Entity> crate(const char *name, Vec4 place, Handle<Object> parent = {})
    {
        return drawn(name, place, box(0.5f), parent);
    }
    TransformComponent &place(Handle<Entity> entity)
    {
        return *handle_cast<TransformComponent>(entity.lookup()->getComponent(SCS("transform"))).lookup();
    }

    // The mouse and the keys, as the level's post office tells them.
    void point(float x, float y) { tell(&EditorComponent::handlePointer, MousePos, 5u, x, y); }
    void press(float x, float y, unsigned button = 0)
    {
        tell(&EditorComponent::handleMouseDown, MouseDownMessage, button, x, y);
    }
    void letGo(float x, float y, unsigned button = 0)
    {
        tell(&EditorComponent::handleMouseUp, MouseUpMessage, button, x, y);
    }
    void key(int code)
    {
        editor->handleKeyDown(KeyDownMessage, code);
        level.frame();
    }
    /// Takes what is seen at a place with the mouse to other pixels, and holds it there.
    void drag(Vec4 from, float right, float down)
    {
        const Vec4 pixel = editor->toScreen(from);
        point(pixel.x, pixel.y);
        press(pixel.x, pixel.y);
        point(pixel.x + right * 0.5f, pixel.y + down * 0.5f);
        point(pixel.x + right, pixel.y + down);
        held = Vec4(pixel.x + right, pixel.y + down, 0, 1);
    }

    TestLevel level;
    Handle<Entity> camera;
    EditorComponent *editor = nullptr;
    Vec4 held; ///< pixels, of the last drag

private:
    void tell(void (EditorComponent::*heard)(const ReflectorPtr &, unsigned, float, float), const ReflectorPtr &message,
              unsigned button, float x, float y)
    {
        const ScreenMetrics &window = getScreenMetrics();
        (editor->*heard)(message, button, x / window.normalizationFactor,
                         (float(window.height) - y) / window.normalizationFactor);
        level.frame();
    }
};

/// A floor that is seen from above and, from below, not at all.
MeshBuilder floorOf(float half)
{
    MeshBuilder shape;
    shape.addPlane(half * 2, half * 2);
    return shape;
}
} // namespace

TEST_F(EditorWorld, PickingHitsTheFrontsOfTrianglesAndPassesOverWhatIsNotDrawnOrLocked)
{
    const Handle<Entity> far = crate("far", Vec4(0, 0, 8, 1));
    const Handle<Entity> near = crate("near", Vec4(0, 0, 4, 1));
    const Handle<Entity> part = crate("part", Vec4(0, 0, 3, 1), near);
    EXPECT_EQ(part, editor->pick(320, 180));
    const Vec4 hit = editor->placeUnder(320, 180);
    EXPECT_EQ(Vec4(0, 0, 2.5f, 1), hit);
    EXPECT_EQ(Vec4(0, 0, -1, 0), editor->getNormalUnder());
    EXPECT_EQ(Handle<Entity>(), editor->pick(10, 10));

    editor->setPickable(near, false);
    EXPECT_EQ(far, editor->pick(320, 180)) << "what stands below it is locked, too";
    editor->setPickable(near, true);
    editor->setHidden(near, true);
    EXPECT_EQ(far, editor->pick(320, 180));
    editor->setHidden(near, false);
    EXPECT_EQ(part, editor->pick(320, 180));

    // From within, a box has no fronts.
    const Handle<Entity> shell = drawn("shell", Vec4(0, 0, 0, 1), box(2.f));
    EXPECT_EQ(part, editor->pick(320, 180));
    place(shell).setScale(Vec4(-1, 1, 1, 0));
    EXPECT_EQ(shell, editor->pick(320, 180)) << "mirrored, it is drawn inside out";
    shell.lookup()->murder();
    // A floor high above covers what lies behind it only where it is.
    const Handle<Entity> ceiling = drawn("ceiling", Vec4(0, 1, 2, 1), floorOf(3.f));
    EXPECT_EQ(part, editor->pick(320, 180));
    editor->goTo(Vec4(0, 5, 2, 1), 0, 89);
    EXPECT_EQ(ceiling, editor->pick(320, 180));
}

TEST_F(EditorWorld, WhatHasNoMeshIsPickedByItsMark)
{
    const Handle<Entity> trigger = level.entity("trigger");
    level.transform(trigger, Vec4(1, 0, 5, 1));
    level.transform(level.entity("part", trigger), Vec4(1, 0.5f, 5, 1));
    const Handle<Entity> lamp = crate("lamp", Vec4(-1, 0, 5, 1));
    const Handle<Entity> light = level.entity("light", lamp);
    level.transform(light, Vec4(-1, 1, 5, 1));
    level.component<LightComponent>(light, "graphics2");
    const Vec4 mark = editor->toScreen(Vec4(1, 0, 5, 1)), shine = editor->toScreen(Vec4(-1, 1, 5, 1));
    EXPECT_EQ(trigger, editor->pick(mark.x + 5, mark.y - 5));
    EXPECT_EQ(light, editor->pick(shine.x, shine.y));
    EXPECT_EQ(Handle<Entity>(), editor->pick(mark.x + 30, mark.y));

    crate("wall", Vec4(1, 0, 3.5f, 1));
    EXPECT_NE(trigger, editor->pick(mark.x + 8, mark.y)) << "behind something, it has to be meant";
    EXPECT_EQ(trigger, editor->pick(mark.x + 1, mark.y));
}

TEST_F(EditorWorld, AMoveTakesAllBelowAlongAndComesBackToTheLastBit)
{
    const Handle<Entity> table = crate("table", Vec4(1, 0, 4, 1));
    place(table).setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 0.3f));
    const auto body = level.component<RigidBody>(table, "physics").lookup();
    body->setVelocity(Vec4(1, 2, 3, 0));
    body->setAngularVelocity(Vec4(0, 1, 0, 0));
    const Handle<Entity> vase = crate("vase", Vec4(1, 1, 4, 1), table);
    const Handle<Entity> knob = crate("knob", Vec4(2, 0, 4, 1), table);
    level.component<ParentFollowerComponent>(knob, "parentFollower").lookup()->setPositionOffset(Vec4(1, 0, 0, 0));
    const Handle<Entity> sign = crate("sign", Vec4(), table);
    level.component<TransformOffsetComponent>(sign, "parentFollower").lookup()->setPositionOffset(Vec4(0, 2, 0, 0));
    level.coordinator().setLoopState(Coordinator::LOOP_STOP);
    frames(1);
    const Vec4 before = place(vase).getPosition();
    RigidMove move;
    move.take(table);
    move.take(vase); // comes along already
    move.apply({Vec4(0, 0, 1, 0), Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 1.5707964f), Vec4(1, 0, 4, 1)});
    frames(2);
    EXPECT_EQ(Vec4(1, 1, 5, 1), place(vase).getPosition());
    EXPECT_LT((place(knob).getPosition() - Vec4(1, 0, 4, 1)).magnitude(), 1e-4f) << "its way turns with the table";
    EXPECT_LT((place(sign).getPosition() - Vec4(1, 2, 5, 1)).magnitude(), 1e-4f);
    EXPECT_EQ(Vec4(), body->getVelocity());
    EXPECT_EQ(Vec4(), body->getAngularVelocity());
    move.restore();
    frames(2);
    const Vec4 after = place(vase).getPosition();
    EXPECT_EQ(0, std::memcmp(&before, &after, sizeof(before)));

    // What follows something that stays where it is takes up the motion itself.
    editor->moveRigidly(sign, Vec4(0.5f, 0, 0, 0), 0, Vec4());
    frames(2);
    EXPECT_LT((place(sign).getPosition() - Vec4(1.5f, 2, 4, 1)).magnitude(), 1e-4f);
    editor->moveRigidly(sign, Vec4(NAN_VALUE, 0, 0, 0), NAN_VALUE, Vec4());
    editor->moveRigidly(Handle<Object>(), Vec4(1, 0, 0, 0), 0, Vec4());
    EXPECT_LT((place(sign).getPosition() - Vec4(1.5f, 2, 4, 1)).magnitude(), 1e-4f);
}

TEST_F(EditorWorld, AnArmDragsWhatIsSelectedAlongItsAxisAndEscapePutsItBack)
{
    const Handle<Entity> one = crate("one", Vec4(0, 0, 5, 1)), other = crate("other", Vec4(0, 1, 5, 1));
    editor->setGizmo(SCS("move"));
    editor->select(one);
    editor->select(other);
    frames(1);
    const Vec4 arm = editor->getGizmoPlace() + Vec4(editor->metresPerPixel(Vec4(0, 0, 5, 1)) * 60, 0, 0, 0);
    drag(arm, 64, 30);
    EXPECT_TRUE(editor->getDragging());
    EXPECT_GT(place(one).getPosition().x, 0.5f);
    EXPECT_EQ(Vec4(0, 0, 5, 1).y, place(one).getPosition().y);
    EXPECT_EQ(place(one).getPosition().x, place(other).getPosition().x);
    key(VK_ESCAPE);
    EXPECT_FALSE(editor->getDragging());
    EXPECT_EQ(0.f, place(one).getPosition().x);
    letGo(held.x, held.y);

    editor->setSnapStep(0.25f);
    editor->setSnapToGrid(true);
    place(one).setPosition(Vec4(0.1f, 0, 5, 1));
    editor->deselect(other);
    frames(1);
    drag(arm - Vec4(0, 0.5f, 0, 0), 90, 0);
    letGo(held.x, held.y);
    const float x = place(one).getPosition().x;
    EXPECT_GT(x, 0.4f);
    EXPECT_FLOAT_EQ(x, std::round(x * 4) / 4) << "on the grid, wherever it was";
}

TEST_F(EditorWorld, ARingTurnsAndAKnobScalesAboutTheHandles)
{
    const Handle<Entity> thing = crate("thing", Vec4(0.2f, -0.2f, 5, 1));
    editor->select(thing);
    editor->setGizmo(SCS("turn"));
    frames(1);
    const float reach = editor->metresPerPixel(Vec4(0, 0, 5, 1)) * 86;
    drag(place(thing).getPosition() + Vec4(reach, 0, 0, 0) * 0.7071f + Vec4(0, reach, 0, 0) * 0.7071f, 86, 20);
    EXPECT_EQ(Vec4(0, 0, 1, 0), editor->getDragAxis());
    const Quaternion turned = place(thing).getOrientation();
    EXPECT_LT(turned.k, -0.1f) << "clockwise, from right above to the right";
    letGo(held.x, held.y);

    place(thing).setOrientation(Quaternion());
    editor->setGizmo(SCS("scale"));
    frames(1);
    drag(place(thing).getPosition() + Vec4(reach, 0, 0, 0), 86, 0);
    EXPECT_NEAR(2.f, place(thing).getScale().x, 0.1f);
    EXPECT_EQ(1.f, place(thing).getScale().y);
    editor->setGizmo(SCS("none"));
    EXPECT_EQ(Vec4(1, 1, 1, 0), place(thing).getScale()) << "handles that are put away let go";
    letGo(held.x, held.y);
    editor->setGizmo(SCS("shear"));
    EXPECT_EQ(1u, countLogLines("'shear' is no gizmo: it is one of none, move, turn, scale"));
}

TEST_F(EditorWorld, WhatIsDraggedSettlesOnSurfacesAndBesideNeighbours)
{
    const Handle<Entity> thing = crate("thing", Vec4(0, 0, 5, 1)), neighbour = crate("neighbour", Vec4(1.4f, 0, 5, 1));
    editor->select(thing);
    editor->setGizmo(SCS("move"));
    editor->setSnapToNeighbours(true);
    frames(1);
    const float pixel = editor->metresPerPixel(Vec4(0, 0, 5, 1));
    drag(Vec4(pixel * 60, 0, 5, 1), 0.36f / pixel, 0);
    EXPECT_NEAR(0.4f, place(thing).getPosition().x, 1e-4f) << "flush, though the mouse stopped 4 cm before";
    editor->cancelDrag();
    letGo(held.x, held.y);

    editor->setSnapToNeighbours(false);
    editor->setSnapToSurfaces(true);
    frames(1);
    const Vec4 target = editor->toScreen(place(neighbour).getPosition() + Vec4(0, 0.2f, -0.5f, 0));
    const Vec4 from = editor->toScreen(Vec4(0, 0, 5, 1));
    drag(Vec4(0, 0, 5, 1), target.x - from.x, target.y - from.y);
    EXPECT_LT((place(thing).getPosition() - Vec4(1.4f, 0.2f, 4.5f, 1)).magnitude(), 0.02f);
    letGo(held.x, held.y);
}

TEST_F(EditorWorld, TheEditorTakesThePictureAndTheInputAndGivesThemBack)
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    InputSystem &input = getSystemDeref<InputSystem>();
    editor->close();
    window.setCursorMode(WindowSystem2::CURSOR_RELATIVE);
    level.coordinator().setLoopState(Coordinator::LOOP_STOP);
    editor->open();
    EXPECT_EQ(SCS(".EditorCamera"), graphicsOf(level.level).getCurrentCamera().lookup()->getName());
    EXPECT_TRUE(input.getScreenTakesInput());
    EXPECT_EQ(WindowSystem2::CURSOR_ABSOLUTE, window.getCursorMode());

    const Vec4 before = editor->getCameraPlace();
    press(320, 180, 1);
    EXPECT_EQ(WindowSystem2::CURSOR_RELATIVE, window.getCursorMode()) << "a look about needs no edges";
    input.keyDown('W');
    frames(20);
    EXPECT_GT(editor->getCameraPlace().z, before.z + 0.3f) << "in a level that stands still";
    input.keyUp('W');
    editor->handleMotion(MouseMove, 0.1f, 0);
    frames(1);
    EXPECT_GT(editor->getCameraTurn(), 5.f);
    letGo(320, 180, 1);
    EXPECT_EQ(WindowSystem2::CURSOR_ABSOLUTE, window.getCursorMode());

    graphicsOf(level.level).pushCamera(camera);
    frames(1);
    EXPECT_EQ(editor->getCamera(), graphicsOf(level.level).getCurrentCamera());
    editor->close();
    EXPECT_EQ(camera, graphicsOf(level.level).getCurrentCamera());
    EXPECT_FALSE(input.getScreenTakesInput());
    EXPECT_EQ(WindowSystem2::CURSOR_RELATIVE, window.getCursorMode());
}

TEST_F(EditorWorld, OfTwoLevelsTheOneInChargeIsEdited)
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    editor->close();
    window.setCursorMode(WindowSystem2::CURSOR_RELATIVE);
    editor->open();
    const Handle<Coordinator> second = level.anotherCoordinator();
    EditorComponent *const other = makeEditor(second);
    other->open();
    EXPECT_FALSE(editor->getActive()) << "one at a time";
    frames(1);
    EXPECT_FALSE(other->getActive()) << "its level is not in charge";
    EXPECT_EQ(WindowSystem2::CURSOR_RELATIVE, window.getCursorMode()) << "as the first one found it";
    editor->open();
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(second);
    frames(2);
    EXPECT_FALSE(editor->getActive());
    other->open();
    frames(1);
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(level.level);
    second.lookup()->murder();
    frames(2);
    EXPECT_FALSE(getSystemDeref<InputSystem>().getScreenTakesInput());
    EXPECT_FALSE(getSystemDeref<EditorSystem>().getEditor().isValid());
}

TEST_F(EditorWorld, WhatDiesOrIsNoNumberDoesNoHarm)
{
    const Handle<Entity> one = crate("one", Vec4(0, 0, 5, 1)), other = crate("other", Vec4(1, 0, 5, 1));
    const Handle<Entity> lost = crate("lost", Vec4(NAN_VALUE, 0, 5, 1));
    for (const Handle<Entity> &each : {one, other, lost, Handle<Entity>()})
        editor->select(each);
    editor->outline(one, Vec4(1, 0, 0, 1));
    editor->setGizmo(SCS("move"));
    frames(2);
    drag(editor->getGizmoPlace(), 20, 0);
    EXPECT_TRUE(editor->getDragging());
    one.lookup()->murder();
    frames(3);
    EXPECT_EQ(2, editor->getSelectedCount());
    letGo(held.x, held.y);
    lost.lookup()->murder();
    frames(2);
    EXPECT_EQ(other, editor->pick(editor->toScreen(place(other).getPosition()).x, 180));

    editor->goTo(Vec4(NAN_VALUE, 1, 1, 1), NAN_VALUE, NAN_VALUE);
    editor->setSnapStep(-1);
    editor->setGizmoPlace(Vec4(0, NAN_VALUE, 0, 1));
    editor->addShapeLine(SCS("l"), Vec4(NAN_VALUE, 0, 0, 1), Vec4(), Vec4(1, 1, 1, 1));
    EXPECT_EQ(0.f, editor->placeUnder(NAN_VALUE, 3).w);
    EXPECT_EQ(0.f, editor->meet(Vec4(), Vec4(), Handle<Object>()).w);
    point(1e9f, -1e9f);
    frames(2);
    editor->frameSelection();
    EXPECT_TRUE(std::isfinite(editor->getCameraPlace().x));
    handle_cast<Entity>(editor->getParent()).lookup()->murder();
    frames(2);
    EXPECT_EQ(camera, graphicsOf(level.level).getCurrentCamera());
}

TEST_F(EditorWorld, AFrameOfAnOpenEditorAllocatesNothingAndAClosedOneDrawsItsShapesOnly)
{
    for (int i = 0; i < 20; ++i)
        editor->select(crate("crate", Vec4(float(i % 5) - 2, float(i / 5) - 2, 8, 1)));
    editor->setMarksShown(true);
    editor->setGizmo(SCS("move"));
    editor->addShapeCircle(SCS("tool"), Vec4(0, 0, 6, 1), 1.f, Vec4(1, 1, 1, 1));
    frames(10);
    const std::size_t opened = allocationsOf([this] { level.frame(); }, 10);
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    const int callsOpen = graphics.getDrawCallCount();
    editor->close();
    frames(5);
    EXPECT_EQ(allocationsOf([this] { level.frame(); }, 10), opened) << "an open editor takes no more than none";
    EXPECT_LE(callsOpen - graphics.getDrawCallCount(), 6);
    const int withShapes = graphics.getDrawCallCount();
    editor->clearShapes(SCS("tool"));
    frames(2);
    EXPECT_EQ(withShapes - 1, graphics.getDrawCallCount());

    editor->addShapeText(SCS("tool"), Vec4(0, 0, 6, 1), SCS("here"), Vec4(1, 1, 1, 1));
    frames(2);
    const auto labels = handle_cast<EditorLabels>(editor->getParent().lookup()->getChild(SCS("labels"))).lookup();
    EXPECT_EQ(1u, labels->getWorldGeometry().texts.size());
    editor->clearShapes(SCS("tool"));
    frames(2);
    EXPECT_TRUE(labels->getWorldGeometry().texts.empty());
}
