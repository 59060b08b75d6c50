#include "port/win32/Diagnostics.h"
#include "port/win32/HostPath.h"
#include "port/win32/WideText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace
{
std::u16string widen(const std::string &text)
{
    WCHAR wide[64];
    const int count = MultiByteToWideChar(CP_ACP, 0, text.data(), int(text.size()), wide, 64);
    return std::u16string(wide, wide + count);
}

/// A folder with "Textures/Wall.dds" in it, gone at the end.
struct Folder
{
    Folder() : root(std::filesystem::temp_directory_path() / ("kavel_hostpath_" + std::to_string(::rand())))
    {
        std::filesystem::create_directories(root / "Textures");
        std::ofstream(root / "Textures" / "Wall.dds") << "x";
    }
    ~Folder() { std::filesystem::remove_all(root); }

    std::string explain(const std::string &below) const
    {
        return port::explainMissingFile((root.string() + "\\" + below).c_str());
    }

    std::filesystem::path root;
};
} // namespace

TEST(HostPath, BackslashesAreTheOnlyThingThatChanges)
{
    EXPECT_EQ(port::hostPath("..\\assets\\models\\Chair"), "../assets/models/Chair");
    EXPECT_EQ(port::hostPath("../scripts/a b.py"), "../scripts/a b.py");
    EXPECT_EQ(port::hostPath(nullptr), "");
}

TEST(HostPath, MissingFileIsExplainedByTheFirstPartThatIsNotThere)
{
    const Folder folder;
    EXPECT_EQ(folder.explain("Textures\\Wall.dds"), "");
    EXPECT_EQ(folder.explain("textures\\Wall.dds"), "There is no \"textures\" in " + folder.root.string() +
                                                        ", but there is \"Textures\": letter case counts.");
    EXPECT_EQ(folder.explain("Textures\\wall.DDS"), "There is no \"wall.DDS\" in " + folder.root.string() +
                                                        "/Textures, but there is \"Wall.dds\": letter case counts.");
    EXPECT_EQ(folder.explain("Textures\\Floor.dds"),
              "There is no \"Floor.dds\" in " + folder.root.string() + "/Textures.");
    EXPECT_EQ(folder.explain("Textures\\Wall.dds\\More"),
              "There is no \"More\" in " + folder.root.string() + "/Textures/Wall.dds.");
    EXPECT_EQ(port::explainMissingFile(""), "The file name is empty.");
}

TEST(WideText, ReadsUtf8)
{
    EXPECT_EQ(widen("GBuffer1"), u"GBuffer1");
    EXPECT_EQ(widen("\xC3\xA4\xE2\x82\xAC"), u"\u00E4\u20AC");
    EXPECT_EQ(widen("\xF0\x9F\x98\x80"), u"\U0001F600");
}

TEST(WideText, ReplacesEachByteThatIsNone)
{
    EXPECT_EQ(widen("a\xFFz"), u"a\uFFFDz");
    EXPECT_EQ(widen("\xC3"), u"\uFFFD") << "cut short";
    EXPECT_EQ(widen("\xC0\xAF"), u"\uFFFD\uFFFD") << "longer than need be";
    EXPECT_EQ(widen("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD") << "half a pair";
}

TEST(WideText, CountsTheRoomItNeeds)
{
    WCHAR wide[3];
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, nullptr, 0), 4);
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, wide, 3), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, nullptr, -1, wide, 3), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}
