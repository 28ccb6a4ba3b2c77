#include "authority.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>

#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace sandbox {
namespace {

template <auto Free>
struct Freed
{
    template <typename T>
    void operator()(T *object) const
    {
        Free(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freed<X509_free>>;
using Bio = std::unique_ptr<BIO, Freed<BIO_vfree>>;

struct Identity
{
    Key key;
    Certificate certificate;
    explicit operator bool() const { return key && certificate; }
};

struct Profile
{
    const char *commonName;
    int days;
    QList<QPair<int, const char *>> extensions;
};

const Profile &authorityProfile()
{
    static const Profile profile{"ZNTAds sandbox authority", 3650,
        {{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
            {NID_key_usage, "critical,keyCertSign,cRLSign"}, {NID_subject_key_identifier, "hash"}}};
    return profile;
}

const Profile &serverProfile()
{
    static const Profile profile{"ZNTAds sandbox exchange", 365,
        {{NID_basic_constraints, "critical,CA:FALSE"}, {NID_key_usage, "critical,digitalSignature"},
            {NID_ext_key_usage, "serverAuth"}, {NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1"},
            {NID_authority_key_identifier, "keyid"}, {NID_subject_key_identifier, "hash"}}};
    return profile;
}

Bio reader(const QByteArray &pem)
{
    return Bio(BIO_new_mem_buf(pem.constData(), int(pem.size())));
}

template <typename Write>
QByteArray pem(Write write)
{
    const Bio bio(BIO_new(BIO_s_mem()));
    if (!bio || !write(bio.get()))
        return {};
    char *data = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &data);
    return QByteArray(data, size);
}

QByteArray certificatePem(const Identity &identity)
{
    return pem([&](BIO *bio) { return PEM_write_bio_X509(bio, identity.certificate.get()); });
}

QByteArray keyPem(const Identity &identity)
{
    return pem([&](BIO *bio) {
        return PEM_write_bio_PrivateKey(
            bio, identity.key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
}

bool addExtensions(X509 *certificate, X509 *issuer, const Profile &profile)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    for (const auto &[nid, value] : profile.extensions) {
        const std::unique_ptr<X509_EXTENSION, Freed<X509_EXTENSION_free>> extension(
            X509V3_EXT_conf_nid(nullptr, &context, nid, value));
        if (!extension || !X509_add_ext(certificate, extension.get(), -1))
            return false;
    }
    return true;
}

bool setRandomSerial(X509 *certificate)
{
    quint64 serial = 0;
    return RAND_bytes(reinterpret_cast<unsigned char *>(&serial), sizeof serial) == 1
        && ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), serial >> 1);
}

// Signed by `issuer`, or by itself when there is none.
Identity issue(const Profile &profile, const Identity *issuer)
{
    Identity made{Key(EVP_EC_gen("P-256")), Certificate(X509_new())};
    X509 *certificate = made.certificate.get();
    if (!made || !setRandomSerial(certificate))
        return {};
    X509 *issuerCertificate = issuer ? issuer->certificate.get() : certificate;
    X509_NAME *name = X509_get_subject_name(certificate);
    const auto *text = reinterpret_cast<const unsigned char *>(profile.commonName);
    const bool done = X509_set_version(certificate, X509_VERSION_3)
        && X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, text, -1, -1, 0)
        && X509_set_issuer_name(certificate, X509_get_subject_name(issuerCertificate))
        // A day back, for clocks that differ a little.
        && X509_gmtime_adj(X509_getm_notBefore(certificate), -24L * 3600)
        && X509_time_adj_ex(X509_getm_notAfter(certificate), profile.days, 0, nullptr)
        && X509_set_pubkey(certificate, made.key.get())
        && addExtensions(certificate, issuerCertificate, profile)
        && X509_sign(certificate, (issuer ? issuer->key : made.key).get(), EVP_sha256());
    return done ? std::move(made) : Identity{};
}

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isCurrent(const Identity &identity, const Identity *issuer)
{
    time_t tomorrow = QDateTime::currentSecsSinceEpoch() + 24 * 3600;
    X509 *certificate = identity.certificate.get();
    return X509_check_private_key(certificate, identity.key.get()) == 1
        && X509_verify(certificate, (issuer ? issuer->key : identity.key).get()) == 1
        && X509_cmp_current_time(X509_get0_notBefore(certificate)) < 0
        && X509_cmp_time(X509_get0_notAfter(certificate), &tomorrow) > 0;
}

Identity load(const QString &base, const Identity *issuer)
{
    const QByteArray certificate = contents(base + ".pem"_L1);
    const QByteArray key = contents(base + ".key"_L1);
    Identity loaded{Key(PEM_read_bio_PrivateKey(reader(key).get(), nullptr, nullptr, nullptr)),
        Certificate(PEM_read_bio_X509(reader(certificate).get(), nullptr, nullptr, nullptr))};
    return loaded && isCurrent(loaded, issuer) ? std::move(loaded) : Identity{};
}

bool write(const QString &fileName, const QByteArray &data, QFile::Permissions permissions)
{
    QSaveFile file(fileName);
    return !data.isEmpty() && file.open(QIODevice::WriteOnly) && file.setPermissions(permissions)
        && file.write(data) == data.size() && file.commit();
}

Identity loadOrIssue(const QString &base, const Profile &profile, const Identity *issuer)
{
    if (Identity loaded = load(base, issuer))
        return loaded;
    constexpr auto owner = QFile::ReadOwner | QFile::WriteOwner;
    Identity made = issue(profile, issuer);
    const bool kept = made && write(base + ".key"_L1, keyPem(made), owner)
        && write(
            base + ".pem"_L1, certificatePem(made), owner | QFile::ReadGroup | QFile::ReadOther);
    return kept ? std::move(made) : Identity{};
}

} // namespace

std::optional<Credentials> credentials(const QString &stateDir, QString *error)
{
    const QDir dir(stateDir);
    if (!dir.mkpath(u"."_s) || !QFileInfo(dir.path()).isWritable()) {
        *error = u"cannot write to the state folder %1"_s.arg(dir.path());
        return {};
    }
    // Two first starts at once must not mix their authorities.
    QLockFile lock(dir.filePath(u"lock"_s));
    lock.lock();
    const Identity ca = loadOrIssue(dir.filePath(u"ca"_s), authorityProfile(), nullptr);
    const Identity server =
        ca ? loadOrIssue(dir.filePath(u"server"_s), serverProfile(), &ca) : Identity{};
    if (!server) {
        *error = u"cannot make or keep the certificates in %1"_s.arg(dir.path());
        return {};
    }
    return Credentials{dir.absoluteFilePath(u"ca.pem"_s), QSslCertificate(certificatePem(ca)),
        QSslCertificate(certificatePem(server)), QSslKey(keyPem(server), QSsl::Ec)};
}

} // namespace sandbox
