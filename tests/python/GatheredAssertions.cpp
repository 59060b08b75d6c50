#include "GatheredAssertions.h"

#include "port/win32/Diagnostics.h"

namespace
{

std::string gathered;

int gather(HWND, const char *text, const char *, UINT)
{
    gathered += text;
    return IDOK;
}

} // namespace

GatheredAssertions::GatheredAssertions()
{
    gathered.clear();
    port::setMessageBoxPresenter(gather);
}

GatheredAssertions::~GatheredAssertions()
{
    port::setMessageBoxPresenter(nullptr);
}

const std::string &GatheredAssertions::getText() const
{
    return gathered;
}
