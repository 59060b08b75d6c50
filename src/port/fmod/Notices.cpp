#include "port/fmod/Notices.h"

#include "port/fmod/FmodExtras.h"

#include <iostream>
#include <unordered_set>

namespace port
{

namespace
{

constexpr std::size_t MOST_TEXTS = 2000; ///< remembered; bad content without end must not fill the memory

struct Notices
{
    AudioNotice notice;
    std::unordered_set<std::string> told;
};

Notices &notices()
{
    static Notices all;
    return all;
}

} // namespace

void setAudioNotice(AudioNotice notice)
{
    notices().notice = std::move(notice);
    notices().told.clear();
}

void tellAudio(const std::string &text, bool isProblem)
{
    Notices &all = notices();
    if (all.told.size() >= MOST_TEXTS || !all.told.insert(text).second)
        return;
    if (all.notice)
        all.notice(text, isProblem);
    else
        std::cerr << text << '\n';
}

std::string shownPath(std::string path)
{
    while (path.starts_with("../"))
        path.erase(0, 3);
    return path;
}

} // namespace port
