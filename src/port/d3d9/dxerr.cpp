// dxerr: the table behind the names and descriptions of the graphics layer's result codes.
#include "port/d3d9/dxerr.h"

namespace
{

struct ErrorText
{
    HRESULT code;
    const char *name;
    const char *description;
};

constexpr HRESULT graphicsError(unsigned code)
{
    return MAKE_HRESULT(1, 0x876, code);
}

constexpr ErrorText ERROR_TEXTS[] = {
    {S_OK, "S_OK", "The call succeeded."},
    {S_FALSE, "S_FALSE", "The call succeeded and had nothing to do."},
    {E_FAIL, "E_FAIL", "An error without a closer description."},
    {E_NOTIMPL, "E_NOTIMPL", "The function is not implemented."},
    {E_NOINTERFACE, "E_NOINTERFACE", "The object does not have the interface."},
    {E_POINTER, "E_POINTER", "A pointer is not valid."},
    {E_ABORT, "E_ABORT", "The operation was aborted."},
    {E_UNEXPECTED, "E_UNEXPECTED", "The call came in a state that does not allow it."},
    {E_ACCESSDENIED, "E_ACCESSDENIED", "Access was denied."},
    {E_HANDLE, "E_HANDLE", "The handle is not valid."},
    {E_OUTOFMEMORY, "E_OUTOFMEMORY", "There is not enough memory."},
    {E_INVALIDARG, "E_INVALIDARG", "An argument is not valid."},
    {graphicsError(380), "D3DERR_OUTOFVIDEOMEMORY", "There is not enough video memory."},
    {graphicsError(540), "D3DERR_WASSTILLDRAWING", "The surface is still in use by a transfer."},
    {graphicsError(2072), "D3DERR_WRONGTEXTUREFORMAT", "The texture's pixel format is not valid here."},
    {graphicsError(2073), "D3DERR_UNSUPPORTEDCOLOROPERATION", "The texture stage's colour operation is not supported."},
    {graphicsError(2074), "D3DERR_UNSUPPORTEDCOLORARG", "The texture stage's colour argument is not supported."},
    {graphicsError(2075), "D3DERR_UNSUPPORTEDALPHAOPERATION", "The texture stage's alpha operation is not supported."},
    {graphicsError(2076), "D3DERR_UNSUPPORTEDALPHAARG", "The texture stage's alpha argument is not supported."},
    {graphicsError(2077), "D3DERR_TOOMANYOPERATIONS", "More texture operations are asked for than the device has."},
    {graphicsError(2078), "D3DERR_CONFLICTINGTEXTUREFILTER", "The texture filters set cannot be used together."},
    {graphicsError(2079), "D3DERR_UNSUPPORTEDFACTORVALUE", "The device does not support the texture factor."},
    {graphicsError(2081), "D3DERR_CONFLICTINGRENDERSTATE", "The render states set cannot be used together."},
    {graphicsError(2082), "D3DERR_UNSUPPORTEDTEXTUREFILTER", "The texture filter is not supported."},
    {graphicsError(2086), "D3DERR_CONFLICTINGTEXTUREPALETTE", "The textures set need different palettes."},
    {graphicsError(2087), "D3DERR_DRIVERINTERNALERROR", "The driver failed internally."},
    {graphicsError(2150), "D3DERR_NOTFOUND", "The item asked for was not found."},
    {graphicsError(2151), "D3DERR_MOREDATA", "There is more data than the buffer holds."},
    {graphicsError(2152), "D3DERR_DEVICELOST", "The device is lost and cannot be reset yet."},
    {graphicsError(2153), "D3DERR_DEVICENOTRESET", "The device is lost and can be reset now."},
    {graphicsError(2154), "D3DERR_NOTAVAILABLE", "The device does not support what was asked for."},
    {graphicsError(2155), "D3DERR_INVALIDDEVICE", "The device type is not valid."},
    {graphicsError(2156), "D3DERR_INVALIDCALL", "The call or one of its arguments is not valid."},
    {graphicsError(2157), "D3DERR_DRIVERINVALIDCALL", "The driver was called in a way that is not valid."},
    {graphicsError(2160), "D3DERR_DEVICEREMOVED", "The graphics adapter was removed."},
    {graphicsError(2164), "D3DERR_DEVICEHUNG", "The device stopped responding and was reset."},
    {graphicsError(2900), "D3DXERR_CANNOTMODIFYINDEXBUFFER", "The index buffer cannot be modified."},
    {graphicsError(2901), "D3DXERR_INVALIDMESH", "The mesh is not valid."},
    {graphicsError(2902), "D3DXERR_CANNOTATTRSORT", "The mesh cannot be sorted by attribute."},
    {graphicsError(2903), "D3DXERR_SKINNINGNOTSUPPORTED", "Skinning is not supported."},
    {graphicsError(2904), "D3DXERR_TOOMANYINFLUENCES", "A vertex has too many influences."},
    {graphicsError(2905), "D3DXERR_INVALIDDATA", "The data is not valid."},
    {graphicsError(2906), "D3DXERR_LOADEDMESHASNODATA", "The loaded mesh has no data."},
    {graphicsError(2907), "D3DXERR_DUPLICATENAMEDFRAGMENT", "A fragment of this name exists already."},
    {graphicsError(2908), "D3DXERR_CANNOTREMOVELASTITEM", "The last item cannot be removed."},
};

const ErrorText *findErrorText(HRESULT code)
{
    for (const ErrorText &text : ERROR_TEXTS)
        if (text.code == code)
            return &text;
    return nullptr;
}

} // namespace

const char *DXGetErrorStringA(HRESULT code)
{
    const ErrorText *const text = findErrorText(code);
    return text ? text->name : "Unknown";
}

const char *DXGetErrorDescriptionA(HRESULT code)
{
    const ErrorText *const text = findErrorText(code);
    return text ? text->description : "n/a";
}
