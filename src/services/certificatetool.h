#pragma once

#include <QString>

#include <set>

namespace platform {
struct SignedFile;
}

/// Whether files may be trusted to run: signed by one of the makers that the program accepts.
namespace CertificateTool {

/// Something whose signature can be looked at.
class ObejctInterface {
public:
    virtual ~ObejctInterface() = default;
    virtual const QString &data() const = 0;
};

/// A file on disk.
class FileObejct : public ObejctInterface {
public:
    FileObejct() = default;
    explicit FileObejct(const QString &path) : m_path(path), m_isSet(true) {}
    bool isSet() const { return m_isSet; }
    /// Its path.
    const QString &data() const override { return m_path; }

private:
    QString m_path;
    bool m_isSet = false;
};

class Verifier {
public:
    enum Flag : unsigned {
        CheapTrust = 1,  ///< digest and signature alone, nothing about certificates
        MatchSigners = 2 ///< a signer, or who stamped the time, must be one of those added
    };

    void addSigner(const QString &name) { m_signers.insert(name); }
    /// Negative when the file is not to be trusted; `platform::Trust` names the codes.
    qint32 verify(const FileObejct &file, unsigned flags) const;
    /// The same for what was read of a file already.
    qint32 verify(const platform::SignedFile &file, unsigned flags) const;
    /// Compares the file's first signer with a name: -2 when there is none, else -1, 0 or 1.
    static int compareSigner(const QString &path, const QString &expected, bool ignoreCase);

private:
    std::set<QString> m_signers; ///< without one, any is as good as another
};

} // namespace CertificateTool

/// Whether a library or program may be used: its suffix is one of those that can be signed, and one of the
/// accepted makers signed it. `fullCheck` also asks that its certificates lead to a root of the system; what
/// the program loads or starts is checked in full.
bool verifyFileSignature(const QString &path, bool fullCheck);

/// The same for what was read of the file at `path` already, which is then the thing to use: the file itself
/// may be another by now.
bool verifySignature(const QString &path, const platform::SignedFile &content, bool fullCheck);
