// Failure values: texts, mapping of the platform's codes, and the pair with a result.
#include "foundation/ErrorCode.h"
#include "port/win32/Diagnostics.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

struct Base
{
};
struct Derived : Base
{
};

ErrorReturn<Base *> findDerived(Derived &derived)
{
    return &derived;
}

ErrorReturn<int> fail()
{
    return ErrorCode::UNKNOWN_KEY;
}

} // namespace

TEST(ErrorCode, OnlySuccessSucceeds)
{
    EXPECT_TRUE(ErrorCode().succeeded());
    for (int code = ErrorCode::MAX_SUCCESS; code <= ErrorCode::MAX_CODE; ++code)
        EXPECT_FALSE(ErrorCode(static_cast<ErrorCode::Code>(code)).succeeded()) << code;
}

TEST(ErrorCode, TextIsTheNameAndWhatThePlatformSays)
{
    EXPECT_EQ(ErrorCode(ErrorCode::BAD_HANDLE).toString(), SCS("BAD_HANDLE: <No error description.>"));
    EXPECT_EQ(ErrorCode(ErrorCode::NOT_IMPLEMENTED).toString(), SCS("NOT_IMPLEMENTED: <No error description.>"));
    EXPECT_EQ(ErrorCode(ErrorCode::CALL_FAILURE, 3).toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_COUNT"));
    EXPECT_EQ(ErrorCode(ErrorCode::CALL_FAILURE, 99).toString(), SCS("CALL_FAILURE: <invalid enum value>"));
    EXPECT_EQ(ErrorCode(ErrorCode::LOST_ASSET).getLongErrorString(),
              SCS("LOST_ASSET: <No error description.>, at:\nTraceback not available."));
}

TEST(ErrorCode, GraphicsCallsFailByTheirSign)
{
    const ErrorCode lost = dxCall(static_cast<HRESULT>(0x88760868));
    EXPECT_EQ(lost.getCode(), ErrorCode::DX_ERROR);
    EXPECT_EQ(lost.toString(), SCS("DX_ERROR: [D3DERR_DEVICELOST] The device is lost and cannot be reset yet."));
    EXPECT_EQ(dxCall(static_cast<HRESULT>(0x81234567)).getErrorString(), SCS("[Unknown] n/a"));
    EXPECT_TRUE(dxCall(S_FALSE).succeeded());
    EXPECT_EQ(dxCall(S_FALSE).getHRESULT(), S_FALSE);
}

TEST(ErrorCode, LastErrorBecomesAWin32Result)
{
    SetLastError(ERROR_SUCCESS);
    EXPECT_TRUE(winError().succeeded());

    SetLastError(ERROR_FILE_NOT_FOUND);
    const ErrorCode missing = winError();
    EXPECT_EQ(missing.getCode(), ErrorCode::WIN32_ERROR);
    EXPECT_EQ(missing.getHRESULT(), static_cast<HRESULT>(0x80070002));
    EXPECT_EQ(missing.getErrorString(), SCS("[0x2] There is no file of this name."));

    SetLastError(0x80004005u);
    EXPECT_EQ(winError().getHRESULT(), E_FAIL);
}

TEST(ErrorCode, UnknownSystemMessageSaysWhyItHasNoText)
{
    EXPECT_EQ(ErrorCode(ErrorCode::WIN32_ERROR, static_cast<HRESULT>(0x8007FFFE)).getErrorString(),
              SCS("[[Error #317 occurred while attempting to retrieve the message for error #65534.]]"));
}

TEST(ErrorCode, ZeroResultOfAPlatformCallReadsTheLastError)
{
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(winErrZ(1).succeeded());
    EXPECT_EQ(winErrZ(static_cast<void *>(nullptr)).getCode(), ErrorCode::WIN32_ERROR);
    EXPECT_EQ(winErrZReturn(5).value, 5);
    EXPECT_FALSE(winErrZReturn(0).succeeded());
}

TEST(ErrorReturn, CarriesAValueOrACode)
{
    EXPECT_TRUE(ErrorReturn<int>(7).succeeded());
    EXPECT_EQ(ErrorReturn<int>(7).value, 7);
    EXPECT_EQ(fail().code.getCode(), ErrorCode::UNKNOWN_KEY);
    EXPECT_EQ(fail().value, 0);
    EXPECT_EQ(ErrorReturn<int>(7, ErrorCode::NOT_CONVERTIBLE).value, 7);
    EXPECT_FALSE(ErrorReturn<void>(ErrorCode::NO_MEMORY).succeeded());
    Derived derived;
    EXPECT_EQ(findDerived(derived).value, &derived);
    EXPECT_EQ(ErrorReturn<double>(ErrorReturn<float>(0.5f)).value, 0.5);
}

TEST(ErrorReturn, OfACodeTellsResultFromFailure)
{
    typedef ErrorReturn<ErrorCode::Code> CodeReturn;
    EXPECT_TRUE(CodeReturn(ErrorCode::BAD_HANDLE).succeeded());
    EXPECT_EQ(CodeReturn(ErrorCode::BAD_HANDLE).value, ErrorCode::BAD_HANDLE);
    EXPECT_FALSE(CodeReturn(ErrorCode(ErrorCode::NOT_AN_ENUMERANT)).succeeded());
}
