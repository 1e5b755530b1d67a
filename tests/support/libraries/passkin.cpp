#include "support/recordedcall.h"

#include <cwchar>

// An account library for tests: every call succeeds, with an answer of its own.

namespace {

bool write(const char *function, const wchar_t *text, wchar_t *buffer, unsigned size) {
    recordCall(function + std::string(" ") + std::to_string(size));
    std::wcsncpy(buffer, text, size);
    return true;
}

bool answer(const char *function) {
    recordCall(function);
    return true;
}

struct Presence {
    Presence() { recordCall("loaded"); }
    ~Presence() { recordCall("unloaded"); }
} const presence;

} // namespace

EXPORTED bool SignIn() {
    return answer("SignIn");
}

EXPORTED bool SignOut() {
    return answer("SignOut");
}

EXPORTED unsigned FetchSignInResult() {
    recordCall("FetchSignInResult");
    return 7;
}

EXPORTED bool IsSignIn() {
    return answer("IsSignIn");
}

EXPORTED bool RefreshUser() {
    return answer("RefreshUser");
}

EXPORTED bool RefreshUserGrade(unsigned kind) {
    recordCall("RefreshUserGrade " + std::to_string(kind));
    return true;
}

EXPORTED bool UserName(wchar_t *buffer, unsigned size) {
    return write("UserName", L"\uD64D\uAE38\uB3D9", buffer, size);
}

EXPORTED bool UserLoginId(wchar_t *buffer, unsigned size) {
    return write("UserLoginId", L"gildong", buffer, size);
}

EXPORTED bool TokenGrantType(wchar_t *buffer, unsigned size) {
    return write("TokenGrantType", L"refresh", buffer, size);
}

EXPORTED bool EncryptedAccessToken(wchar_t *buffer, unsigned size) {
    // As long as there is room, and longer than that.
    return write("EncryptedAccessToken", std::wstring(size + 10, L'x').c_str(), buffer, size);
}
