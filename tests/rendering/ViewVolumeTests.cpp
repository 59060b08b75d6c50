#include "RenderingWorld.h"

#include "rendering/frame/ViewVolume.h"

#include "assets/models/DynamicMeshAsset.h"
#include "foundation/Quaternion.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/frame/RenderParams.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

/// Whether some of many points of a sphere can be seen, each tried by itself.
bool somePointIsSeen(const Vec4 &centre, float radius, const Matrix4 &worldToView, const Matrix4 &projection,
                     float coneAngle, std::mt19937 &chance)
{
    std::normal_distribution<float> normal;
    std::uniform_real_distribution<float> share;
    for (int i = 0; i < 300; ++i)
    {
        Vec4 offset(normal(chance), normal(chance), normal(chance), 0);
        offset.normalize();
        Vec4 point = centre + offset * (radius * std::cbrt(share(chance)));
        point.w = 1;
        const Vec4 view = worldToView * point;
        const Vec4 clip = view * projection;
        const bool inFrustum =
            std::fabs(clip.x) <= clip.w && std::fabs(clip.y) <= clip.w && clip.z >= 0 && clip.z <= clip.w;
        if (inFrustum && std::atan2(std::hypot(view.x, view.y), view.z) <= coneAngle)
            return true;
    }
    return false;
}

} // namespace

TEST(ViewVolume, LeavesOutNothingThatCanBeSeenAndMostOfWhatCannot)
{
    std::mt19937 chance(7);
    std::uniform_real_distribution<float> place(-12, 12), size(0.1f, 3), turn(-3, 3), angle(0.2f, 0.7f);
    int unseen = 0, excluded = 0;
    for (int i = 0; i < 4000; ++i)
    {
        const Quaternion way =
            Quaternion::fromAxisAngle(Vec4(place(chance), place(chance), place(chance), 0), turn(chance));
        Matrix4 placed;
        placed.translate(Vec4(place(chance) / 4, place(chance) / 4, place(chance) / 4, 0));
        const Matrix4 worldToView = (placed * way.generateRotation()).inverse();
        Matrix4 projection;
        const float half = angle(chance), zoom = 1 / std::tan(half), nearest = 0.1f, farthest = 20;
        projection.zero();
        projection[0][0] = zoom / 1.7f;
        projection[1][1] = zoom;
        projection[2][2] = farthest / (farthest - nearest);
        projection[2][3] = 1;
        projection[3][2] = -nearest * projection[2][2];
        const bool isParallel = i % 3 == 0, hasCone = i % 3 == 1;
        if (isParallel) // and mirrored
        {
            projection[0][0] = -1 / 6.0f;
            projection[1][1] = 1 / 4.0f;
            projection[2][2] = 1 / (farthest - nearest);
            projection[2][3] = 0;
            projection[3][2] = -nearest * projection[2][2];
            projection[3][3] = 1;
        }
        ViewVolume volume(worldToView, projection);
        if (hasCone)
            volume.narrowToCone(worldToView, half);
        Vec4 centre(place(chance), place(chance), place(chance), 1);
        const float radius = size(chance);
        const bool seen = somePointIsSeen(centre, radius, worldToView, projection, hasCone ? half : 4, chance);
        EXPECT_FALSE(seen && volume.excludes(centre, radius));
        unseen += !seen;
        excluded += volume.excludes(centre, radius);
    }
    EXPECT_GT(excluded, unseen * 9 / 10) << "of " << unseen;
}

TEST(ViewVolume, ShadowPassLeavesOutWhatStandsBesideTheConeOfItsLight)
{
    RenderingWorld world;
    const Handle<Object> map = world.mapWithGrid().getAncestorOfType<MapRootEntity>();
    {
        const RenderingWorld::OnRealDevice real(world);
        // The window is wider than high: at 8 m, the frustum reaches 5.9 m to the side, the cone 3.3 m.
        for (const float x : {0.0f, 4.8f, 30.0f})
        {
            const Handle<Entity> entity = world.level.entity("model", map);
            world.level.transform(entity, Vec4(x, 0, 8, 1)).lookup()->setScale(Vec4(0.3f, 0.3f, 0.3f, 0));
            ModelGraphicsComponent2 &model =
                *world.level.component<ModelGraphicsComponent2>(entity, "graphics2").lookup();
            model.setMesh(world.graphics().getFullScreenQuad());
            model.setLayer(SceneGraph::WORLD);
            model.onLoadComplete();
            world.level.component<BoundingVolume>(entity, "boundingVolume").lookup()->setHitBox(Vec4(1, 1, 1, 0));
        }
        world.level.frame();
    }

    GraphicsSystem2::SceneRenderParams params;
    params.viewer = world.camera;
    params.layer = SceneGraph::WORLD;
    params.depthTarget = SCS("GBuffer");
    params.bindTarget(SCS("GBuffer1"));
    for (const auto &[set, instances] : {std::pair("Default", 2), std::pair("Shadow", 1)})
    {
        params.shaderSet = SCS(set);
        ASSERT_TRUE(world.graphics().beginFrame().succeeded());
        world.device->take();
        EXPECT_TRUE(world.sceneGraph().render(params).succeeded());
        EXPECT_EQ(world.device->count("DrawIndexed 2 primitives x " + std::to_string(instances)), 1) << set;
        world.graphics().endFrame().ignoreError();
    }
}
