#include "services/accountlibrary.h"

#include "services/managementprogram.h"
#include "services/signedlibrary.h"
#include "services/widetext.h"

namespace {

// In wide characters.
constexpr unsigned NameSize = 100;
constexpr unsigned TokenSize = 4096;

using Action = bool (*)();
using Number = unsigned (*)();
using Refresh = bool (*)(unsigned reason);
using Text = bool (*)(wchar_t *buffer, unsigned size);

/// The library while it is loaded.
struct Account {
    const SignedLibrary library{ManagementProgram::libraryPath(QStringLiteral("passkin"))};
    const Action signIn = library.resolve<Action>("SignIn");
    const Action signOut = library.resolve<Action>("SignOut");
    const Number fetchSignInResult = library.resolve<Number>("FetchSignInResult");
    const Action isSignIn = library.resolve<Action>("IsSignIn");
    const Action refreshUser = library.resolve<Action>("RefreshUser");
    const Refresh refreshUserGrade = library.resolve<Refresh>("RefreshUserGrade");
    const Text userName = library.resolve<Text>("UserName");
    const Text userLoginId = library.resolve<Text>("UserLoginId");
    const Text tokenGrantType = library.resolve<Text>("TokenGrantType");
    const Text encryptedAccessToken = library.resolve<Text>("EncryptedAccessToken");
};

template <typename Function, typename... Arguments>
auto call(const Function Account::*function, Arguments... arguments) {
    const Account account;
    using Result = decltype((account.*function)(arguments...));
    return account.*function ? (account.*function)(arguments...) : Result{};
}

template <unsigned Size> QString text(const Text Account::*function) {
    return readWideText<Size>(
        [function](wchar_t *buffer, unsigned size) { return call(function, buffer, size); });
}

} // namespace

namespace AccountLibrary {

bool signIn() {
    return call(&Account::signIn);
}

bool signOut() {
    return call(&Account::signOut);
}

unsigned fetchSignInResult() {
    return call(&Account::fetchSignInResult);
}

bool isSignIn() {
    return call(&Account::isSignIn);
}

bool refreshUser() {
    return call(&Account::refreshUser);
}

bool refreshUserGrade(unsigned reason) {
    return call(&Account::refreshUserGrade, reason);
}

QString userName() {
    return text<NameSize>(&Account::userName);
}

QString userLoginId() {
    return text<NameSize>(&Account::userLoginId);
}

QString tokenGrantType() {
    return text<NameSize>(&Account::tokenGrantType);
}

QString encryptedAccessToken() {
    return text<TokenSize>(&Account::encryptedAccessToken);
}

} // namespace AccountLibrary
