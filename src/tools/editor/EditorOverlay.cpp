#include "tools/editor/EditorOverlay.h"

#include "tools/editor/EditorLabels.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "rendering/debug/DebugTextGraphicsComponent.h"

#include "foundation/Finite.h"

namespace
{
constexpr const char *shapeNames[] = {"areas", "boxes", "lines", "cones", "cubes"};

Handle<Entity> makeChild(const String &name, const Handle<Entity> &parent)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    entity.lookup()->setName(name);
    entity.lookup()->setParent(parent);
    return entity;
}

Handle<OverlayGraphics> makeDrawer(const Handle<Entity> &editor, int shape, EditorOverlay::Depth depth)
{
    const String name = String::format("%s%s", shapeNames[shape], depth == EditorOverlay::BEHIND ? "Behind" : "");
    const Handle<Entity> entity = makeChild(name, editor);
    const auto hDrawer = handle_cast<OverlayGraphics>(
        entity.lookup()->addComponent(ComponentKeys::graphics2, OverlayGraphics::staticType));
    const auto drawer = hDrawer.lookup();
    if (!drawer)
        return {};
    drawer->setShape(static_cast<OverlayGraphics::Shape>(shape));
    drawer->setLayer(depth == EditorOverlay::BEHIND ? SceneGraph::WORLD_DEBUG : SceneGraph::SCREEN_DEBUG);
    drawer->onLoadComplete();
    return hDrawer;
}

/// The collector stands beside no manager: nobody but the editor runs it.
Handle<EditorLabels> makeLabels(const Handle<Entity> &editor)
{
    const Handle<EditorLabels> labels = construct<EditorLabels>(defaultAllocationCategory);
    labels.lookup()->setName(SCS("labels"));
    labels.lookup()->setParent(editor);
    const Handle<Entity> entity = makeChild(SCS("texts"), editor);
    const auto drawer =
        handle_cast<DebugTextGraphicsComponent>(
            entity.lookup()->addComponent(ComponentKeys::graphics2, DebugTextGraphicsComponent::staticType))
            .lookup();
    if (!drawer)
        return labels;
    drawer->setLayer(SceneGraph::SCREEN_DEBUG);
    drawer->setCollector(labels);
    drawer->onLoadComplete();
    return labels;
}
} // namespace

Matrix4 frameOf(const Vec4 &x, const Vec4 &y, const Vec4 &z, const Vec4 &origin)
{
    Matrix4 frame;
    frame.basis(x, y, z);
    for (int row = 0; row < 3; ++row)
        frame[row][3] = origin[row];
    return frame;
}

void EditorOverlay::build(const Handle<Entity> &editor)
{
    if (labels.isValid() || !editor.isValid())
        return;
    for (const Depth depth : {BEHIND, OVER_ALL})
        for (int shape = 0; shape < SHAPES; ++shape)
            if (depth == OVER_ALL || shape <= OverlayGraphics::OS_LINE)
                drawers[depth][static_cast<std::size_t>(shape)] = makeDrawer(editor, shape, depth);
    labels = makeLabels(editor);
}

OverlayGraphics *EditorOverlay::drawer(OverlayGraphics::Shape shape, Depth depth)
{
    return drawers[depth][static_cast<std::size_t>(shape)].lookup().ptr;
}

void EditorOverlay::clear()
{
    for (auto &row : drawers)
        for (const Handle<OverlayGraphics> &each : row)
            if (const auto drawn = each.lookup())
                drawn->getInstances().clear();
    if (const auto shown = labels.lookup())
        shown->doFrame(); // none have been added since they were shown
}

void EditorOverlay::show(const EditorView &view)
{
    for (auto &row : drawers)
        for (const Handle<OverlayGraphics> &each : row)
            if (const auto drawn = each.lookup())
                drawn->setWorldToClip(view.worldToClip());
    if (const auto shown = labels.lookup())
        shown->doFrame();
}

void EditorOverlay::add(OverlayGraphics::Shape shape, const DefaultInstanceVertex &instance, Depth depth)
{
    if (OverlayGraphics *const drawn = drawer(shape, depth))
        drawn->getInstances().push_back(instance);
}

void EditorOverlay::append(OverlayGraphics::Shape shape, const OverlayGraphics::InstanceList &instances, Depth depth)
{
    if (OverlayGraphics *const drawn = drawer(shape, depth))
        drawn->getInstances().insert(drawn->getInstances().end(), instances.begin(), instances.end());
}

void EditorOverlay::line(const Vec4 &from, const Vec4 &to, const Vec4 &color, float width, Depth depth)
{
    add(OverlayGraphics::OS_LINE, OverlayGraphics::place(frameOf(to - from, Vec4(), Vec4(), from), color, width),
        depth);
}

void EditorOverlay::box(const Matrix4 &placement, const Vec4 &color, float width, Depth depth)
{
    add(OverlayGraphics::OS_BOX, OverlayGraphics::place(placement, color, width), depth);
}

void EditorOverlay::area(const Vec4 &corner, const Vec4 &edge, const Vec4 &otherEdge, const Vec4 &color, Depth depth)
{
    add(OverlayGraphics::OS_AREA, OverlayGraphics::place(frameOf(edge, Vec4(), otherEdge, corner), color), depth);
}

void EditorOverlay::cone(const Vec4 &base, const Vec4 &along, float radius, const Vec4 &color)
{
    const Vec4 across = std::fabs(along.y) < 0.9f * along.magnitude() ? Vec4(0, 1, 0, 0) : Vec4(1, 0, 0, 0);
    Vec4 side = along.cross(across);
    side.normalize();
    Vec4 other = along.cross(side);
    other.normalize();
    // x, y and z of one handedness, or the front would be the back.
    add(OverlayGraphics::OS_CONE, OverlayGraphics::place(frameOf(along, side * radius, other * radius, base), color),
        OVER_ALL);
}

void EditorOverlay::cube(const Matrix4 &placement, const Vec4 &color)
{
    add(OverlayGraphics::OS_CUBE, OverlayGraphics::place(placement, color), OVER_ALL);
}

void EditorOverlay::text(const Vec4 &place, const String &words, const Vec4 &color)
{
    if (const auto shown = labels.lookup(); shown && isFinite(place))
        shown->addText3D(place, words, color);
}
