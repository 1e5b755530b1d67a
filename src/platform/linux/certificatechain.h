#pragma once

#include "platform/filesignature.h"

#include <openssl/x509.h>

namespace certificatechain {

enum class Purpose { CodeSigning, TimeStamping };

/// Whether the certificate leads to a root of the system and may be used for this, at `time` (now, if
/// invalid). Revocation is not looked up: the check works without a network.
platform::Trust check(X509 *certificate, STACK_OF(X509) * others, Purpose purpose, const QDateTime &time);

/// Instead of the system's roots those of a file; empty brings back the system's.
void setRoots(const QString &path);

/// The name that people know it by: common name, else unit, organisation or mail address.
QString displayName(const X509_NAME *name);

} // namespace certificatechain
