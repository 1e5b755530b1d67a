#include "platform/linux/certificatechain.h"

#include "platform/linux/freer.h"

#include <QFile>

#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <memory>

using platform::Trust;

namespace certificatechain {

namespace {

/// Of the library's scale of security: 112 bits. A certificate whose digest (MD5, SHA-1) or short key anybody
/// can forge vouches for nobody.
constexpr int LeastSecurity = 2;

/// Of a chain that does not hold. What a certificate is for is no error there: nobody asks the library.
Trust trustOf(int error) {
    switch (error) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
    case X509_V_ERR_CERT_NOT_YET_VALID:
        return Trust::Expired;
    default:
        return Trust::UntrustedRoot;
    }
}

/// Whether the certificate says itself that it is for this. One that says nothing is for anything only as an
/// authority; what signs has to say it.
bool isFor(X509 *certificate, Purpose purpose, bool isSigner) {
    const uint32_t flags = X509_get_extension_flags(certificate);
    if (!(flags & EXFLAG_XKUSAGE))
        return !isSigner;
    const uint32_t usage = X509_get_extended_key_usage(certificate);
    const uint32_t wanted = purpose == Purpose::CodeSigning ? XKU_CODE_SIGN : XKU_TIMESTAMP;
    return usage & wanted || (!isSigner && usage & XKU_ANYEKU);
}

/// In place of the system's roots, if any.
QString &otherRoots() {
    static QString path;
    return path;
}

/// By their places and not as the library's defaults, which obey variables that anybody sets for a program of
/// his session. What cannot be read holds no roots.
void addRoots(X509_STORE *store) {
    if (!otherRoots().isEmpty()) {
        X509_STORE_load_file(store, QFile::encodeName(otherRoots()).constData());
        return;
    }
    X509_STORE_load_file(store, X509_get_default_cert_file());
    X509_STORE_load_path(store, X509_get_default_cert_dir());
}

bool mayBeUsed(STACK_OF(X509) * chain, Purpose purpose) {
    const int count = sk_X509_num(chain);
    for (int i = 0; i < count; ++i) {
        // The root is trusted as it stands in the system.
        const bool isRoot = i == count - 1 && i > 0;
        if (!isRoot && !isFor(sk_X509_value(chain, i), purpose, i == 0))
            return false;
    }
    X509 *signer = sk_X509_value(chain, 0);
    const bool saysUsage = X509_get_extension_flags(signer) & EXFLAG_KUSAGE;
    return !saysUsage || X509_get_key_usage(signer) & KU_DIGITAL_SIGNATURE;
}

} // namespace

Trust check(X509 *certificate, STACK_OF(X509) * others, Purpose purpose, const QDateTime &time) {
    const std::unique_ptr<X509_STORE, Freer<X509_STORE_free>> store(X509_STORE_new());
    const std::unique_ptr<X509_STORE_CTX, Freer<X509_STORE_CTX_free>> context(X509_STORE_CTX_new());
    if (!store || !context)
        return Trust::Failed;
    addRoots(store.get());
    if (!X509_STORE_CTX_init(context.get(), store.get(), certificate, others))
        return Trust::Failed;
    X509_VERIFY_PARAM_set_auth_level(X509_STORE_CTX_get0_param(context.get()), LeastSecurity);
    if (time.isValid())
        X509_STORE_CTX_set_time(context.get(), 0, static_cast<time_t>(time.toSecsSinceEpoch()));
    if (X509_verify_cert(context.get()) != 1)
        return trustOf(X509_STORE_CTX_get_error(context.get()));
    return mayBeUsed(X509_STORE_CTX_get0_chain(context.get()), purpose) ? Trust::Good : Trust::WrongUsage;
}

void setRoots(const QString &path) {
    otherRoots() = path;
}

QString displayName(const X509_NAME *name) {
    for (const int part :
         {NID_commonName, NID_organizationalUnitName, NID_organizationName, NID_pkcs9_emailAddress}) {
        const int place = X509_NAME_get_index_by_NID(name, part, -1);
        if (place < 0)
            continue;
        unsigned char *text = nullptr;
        const int length =
            ASN1_STRING_to_UTF8(&text, X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, place)));
        const QString found =
            length > 0 ? QString::fromUtf8(reinterpret_cast<char *>(text), length) : QString();
        OPENSSL_free(text);
        if (!found.isEmpty())
            return found;
    }
    return QString();
}

} // namespace certificatechain
