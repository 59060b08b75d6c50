#include "support/TemporaryFile.h"

#include "assets/cache/AssetSystem.h"
#include "assets/cache/AssetUploader.h"
#include "assets/fonts/FontAssetLoader.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/models/DynamicMeshAssetLoader.h"
#include "assets/models/MeshAsset.h"
#include "assets/models/MeshAssetLoader.h"
#include "assets/building/MeshBuilder.h"
#include "assets/models/ModelFile.h"
#include "assets/cache/TextureAsset.h"
#include "assets/cache/TextureAssetLoader.h"
#include "support/RequestListener.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

/// Takes every upload and answers as the test wants; no device stands behind it.
class FakeUploader : public IAssetUploader
{
public:
    FakeUploader() : before(setAssetUploader(this)) {}
    ~FakeUploader() override { setAssetUploader(before); }

    ErrorCode uploadTexture(Handle<TextureAsset> texture) override
    {
        ++uploads;
        texture.lookup()->onUploadComplete(answer);
        return answer;
    }
    String replaceTexture(Handle<TextureAsset>) override
    {
        ++uploads;
        return answer.succeeded() ? String() : SCS("It cannot be read.");
    }
    ErrorCode uploadCoverage(Handle<TextureAsset> texture, const CoverageImage &) override
    {
        ++uploads;
        texture.lookup()->onUploadComplete(answer);
        return answer;
    }
    ErrorCode uploadMesh(Handle<MeshAsset> mesh) override
    {
        ++uploads;
        mesh.lookup()->onUploadComplete(answer);
        return answer;
    }

    int uploads = 0;
    ErrorCode answer;

private:
    IAssetUploader *before;
};

class Assets : public testing::Test
{
protected:
    Handle<Asset> request(const ReflectorPtr &loader, const char *name)
    {
        return getSystemDeref<AssetSystem>().startLoad(loader, SCS(name), listener.callback(), getNextRequestHandle());
    }

    TestLevel level;
    FakeUploader uploader;
    RequestListener &listener = RequestListener::make();
};

} // namespace

TEST_F(Assets, OneNameIsLoadedOnceAndEveryRequestIsAnswered)
{
    const Handle<Asset> first = request(TextureAssetLoader::staticType, "wall.dds");
    const Handle<Asset> second = request(TextureAssetLoader::staticType, "wall.dds");
    const Handle<Asset> other = request(TextureAssetLoader::staticType, "floor.dds");
    EXPECT_EQ(first, second);
    EXPECT_NE(first, other);
    EXPECT_EQ(uploader.uploads, 2);
    ASSERT_EQ(listener.requests.size(), 3u) << "a finished asset answers at once";
    EXPECT_LT(listener.requests[0], listener.requests[1]) << "each answer carries its own request";
    EXPECT_EQ(handle_cast<TextureAsset>(first).lookup()->getFileName(), SCS("..\\assets\\textures\\wall.dds"));
}

TEST_F(Assets, DynamicNameGivesANewObjectEachTime)
{
    const Handle<Asset> first = request(DynamicMeshAssetLoader::staticType, "<dynamic>");
    const Handle<Asset> second = request(DynamicMeshAssetLoader::staticType, "<dynamic>");
    EXPECT_NE(first, second);
    EXPECT_TRUE(listener.requests.empty()) << "nothing is ready before code has filled it";
    MeshBuilder box;
    box.addBox(Vec4(1, 2, 3));
    const auto made = handle_cast<DynamicMeshAsset>(first).lookup();
    made->setMeshData(box);
    EXPECT_EQ(made->getMeshData().calculatePrimCount(), 12);
    EXPECT_EQ(made->getBoundsMax(), Vec4(1, 2, 3, 1));
    EXPECT_EQ(listener.requests.size(), 1u);
    EXPECT_TRUE(first.lookup()->getStatus().succeeded());
    EXPECT_EQ(second.lookup()->getStatus().getCode(), ErrorCode::ASSET_NOT_READY);
}

TEST_F(Assets, ACallbackIsServedThatAsksForItsOwnAsset)
{
    listener.whenCalled = [this]
    {
        listener.whenCalled = nullptr;
        request(TextureAssetLoader::staticType, "wall.dds");
    };
    const Handle<Asset> asset = request(TextureAssetLoader::staticType, "wall.dds");
    EXPECT_EQ(listener.requests.size(), 2u);
    EXPECT_EQ(uploader.uploads, 1);
    EXPECT_EQ(request(TextureAssetLoader::staticType, "wall.dds"), asset);
}

TEST_F(Assets, ALoadThatAnExceptionEndsIsTriedAgain)
{
    listener.whenCalled = [] { throw std::runtime_error("the listener had enough"); };
    EXPECT_THROW(request(TextureAssetLoader::staticType, "wall.dds"), std::runtime_error);
    listener.whenCalled = nullptr;
    EXPECT_TRUE(request(TextureAssetLoader::staticType, "wall.dds").lookup()->getStatus().succeeded());
    EXPECT_EQ(uploader.uploads, 2);
}

TEST_F(Assets, AFolderIsNoFont)
{
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_EQ(request(FontAssetLoader::staticType, ".").lookup()->getStatus().getCode(), ErrorCode::LOST_ASSET);
    EXPECT_EQ(countLogLines("fonts\\. did not load; texts that use it are not drawn. It is empty, or a folder."), 1u);
}

TEST_F(Assets, FailureStaysAndIsNotTriedAgain)
{
    uploader.answer = ErrorCode(ErrorCode::DX_ERROR, static_cast<HRESULT>(0x88760866));
    const std::size_t logged = countLogLines("Upload of texture asset ..\\assets\\textures\\gone.dds failed: DX_ERROR");
    const Handle<Asset> asset = request(TextureAssetLoader::staticType, "gone.dds");
    request(TextureAssetLoader::staticType, "gone.dds");
    EXPECT_EQ(asset.lookup()->getStatus().getCode(), ErrorCode::DX_ERROR);
    EXPECT_EQ(uploader.uploads, 1);
    EXPECT_EQ(listener.requests.size(), 2u) << "a failure is an answer too";
    EXPECT_EQ(countLogLines("Upload of texture asset ..\\assets\\textures\\gone.dds failed: DX_ERROR"), logged + 1);
}

TEST_F(Assets, MissingModelIsNotImplementedAndNothingIsUploaded)
{
    testing::internal::CaptureStderr();
    const Handle<Asset> asset = request(MeshAssetLoader::staticType, "noSuchModel");
    EXPECT_NE(
        testing::internal::GetCapturedStderr().find("error opening file ..\\assets\\models\\noSuchModel.kaVelModel!\n"),
        std::string::npos);
    EXPECT_EQ(asset.lookup()->getStatus().getCode(), ErrorCode::NOT_IMPLEMENTED);
    EXPECT_EQ(uploader.uploads, 0);
    EXPECT_EQ(listener.requests.size(), 1u);
}

TEST_F(Assets, ModelWithoutMeshesFailsInsteadOfReadingBeyondItsEnd)
{
    const TemporaryFile file;
    ASSERT_TRUE(ModelFile().save(file.name()));
    const Handle<MeshAsset> asset = construct<MeshAsset>(defaultAllocationCategory);
    asset.lookup()->setFileName(file.name());
    asset.lookup()->startLoad();
    EXPECT_EQ(asset.lookup()->getStatus().getCode(), ErrorCode::NOT_IMPLEMENTED);
    EXPECT_EQ(uploader.uploads, 0);
}

TEST_F(Assets, BoundsAreThoseOfTheDataThatAMeshHasNow)
{
    const auto mesh = construct<MeshAsset>(defaultAllocationCategory).lookup();
    Mesh::VertexBufferType vertices(2, DefaultMeshVertex{});
    vertices[0].position = {-1.f, 5.f, 2.f};
    vertices[1].position = {3.f, 4.f, -2.f};
    mesh->setMeshData(vertices);
    EXPECT_EQ(mesh->getBoundsMin(), Vec4(-1.f, 4.f, -2.f, 1.f));
    EXPECT_EQ(mesh->getBoundsMax(), Vec4(3.f, 5.f, 2.f, 1.f));
    mesh->setMeshData(Mesh());
    EXPECT_EQ(mesh->getBoundsMin(), Vec4(0.f, 0.f, 0.f, 1.f)) << "not those of before, nor infinite";
    EXPECT_EQ(mesh->getBoundsMax(), Vec4(0.f, 0.f, 0.f, 1.f));
}

TEST_F(Assets, ListenersThatStayHearEveryChange)
{
    const Handle<Asset> asset = request(DynamicMeshAssetLoader::staticType, "<dynamic>");
    asset.lookup()->addListener(listener.callback(), 77, false);
    asset.lookup()->setStatus(ErrorCode::SUCCESS);
    asset.lookup()->setStatus(ErrorCode::SUCCESS);
    ASSERT_EQ(listener.requests.size(), 3u);
    EXPECT_EQ(listener.requests[1], 77u);
    EXPECT_EQ(listener.requests[2], 77u) << "the one-shot listener is gone";
}

TEST_F(Assets, ListenerThatDiedIsPassedOverSilently)
{
    const Handle<Asset> asset = request(DynamicMeshAssetLoader::staticType, "<dynamic>");
    listener.murder();
    cremateDeadObjects();
    const std::size_t logged = countLogLines("Listener");
    asset.lookup()->setStatus(ErrorCode::SUCCESS);
    EXPECT_EQ(countLogLines("Listener"), logged);
}

TEST_F(Assets, ACallbackThatAsksForItsOwnAssetWithoutEndIsLeftInTheEnd)
{
    listener.whenCalled = [this] { request(TextureAssetLoader::staticType, "loop.dds"); };
    const Handle<Asset> asset = request(TextureAssetLoader::staticType, "loop.dds");
    EXPECT_TRUE(asset.isValid());
    EXPECT_EQ(uploader.uploads, 1);
    EXPECT_EQ(countLogLines("of asset loop.dds asks for that asset in its own call, without end"), 1u);
}

TEST_F(Assets, ClassThatIsNoLoaderGivesAnInvalidHandle)
{
    EXPECT_FALSE(request(nullptr, "x").isValid());
    EXPECT_FALSE(request(Entity::staticType, "x").isValid());
    EXPECT_FALSE(request(AssetLoader::staticType, "x").isValid()) << "the abstract base makes nothing";
}
