#pragma once

#include <QString>

/// The library that knows the user's account with the maker. It is loaded anew for each call and unloaded
/// after it, so that it is as new as its last update; docs/plugins.md tells its functions.
///
/// Without the library or the function the answer is false, 0 or an empty text. GUI thread only.
namespace AccountLibrary {

/// Why the user's grade is asked for, as the library numbers it.
constexpr unsigned AtFirstShow = 1;

bool signIn();
bool signOut();
/// How the last sign-in ended, as the library numbers it.
unsigned fetchSignInResult();
bool isSignIn();
/// Has the library ask the maker's service anew about the user, or about what the user may do.
bool refreshUser();
bool refreshUserGrade(unsigned reason);

QString userName();
QString userLoginId();
QString tokenGrantType();
QString encryptedAccessToken();

} // namespace AccountLibrary
