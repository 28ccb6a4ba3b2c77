#include "diagnostics/log.h"

#include <ZNTAds/ZNTTrackInfo.h>

#include <openssl/evp.h>

#include <limits>
#include <memory>

namespace {

constexpr qsizetype blockSize = 16;

// A null array when the cipher fails.
QByteArray encrypted(const QByteArray &plain, const QByteArray &key)
{
    // OpenSSL counts in int.
    if (plain.size() > std::numeric_limits<int>::max() - blockSize)
        return {};
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
        EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    QByteArray result(plain.size() + blockSize, Qt::Uninitialized);
    auto *out = reinterpret_cast<unsigned char *>(result.data());
    const auto bytes = [](const QByteArray &array) {
        return reinterpret_cast<const unsigned char *>(array.constData());
    };
    int written = 0;
    int rest = 0;
    // A new context pads as PKCS7 says.
    if (!context
        || !EVP_EncryptInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, bytes(key), nullptr)
        || !EVP_EncryptUpdate(context.get(), out, &written, bytes(plain), int(plain.size()))
        || !EVP_EncryptFinal_ex(context.get(), out + written, &rest))
        return {};
    result.truncate(written + rest);
    return result;
}

} // namespace

QString ZNTTrackInfo::aesEncrypt(const QString &plainText, const QString &key)
{
    QByteArray keyBytes = key.toUtf8();
    keyBytes.resize(blockSize, '\0');
    const QByteArray result = encrypted(plainText.toUtf8(), keyBytes);
    if (result.isNull()) {
        znt::logError("AES encryption failed");
        return plainText;
    }
    znt::logInfo("AES encryption successful");
    return QString::fromLatin1(result.toBase64());
}

QStringList ZNTTrackInfo::encryptPriceMacro(const QStringList &urls, const QString &price)
{
    znt::logInfo("Starting price macro encryption for %1 URLs", urls.size());
    QStringList result;
    result.reserve(urls.size());
    for (QString url : urls) {
        url.replace(
            QLatin1String("${AUCTION_PRICE}"), aesEncrypt(price, QStringLiteral("demo_aes_pwd")));
        znt::logInfo("Processed URL with encrypted price: %1", url);
        result.append(url);
    }
    return result;
}
