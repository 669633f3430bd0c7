// The resolver of the process-wide default administration, with the language
// that the settings give for unit names. It is built once, under a lock, when
// the default administration has loaded; until then every call tries again.
#include <atomic>
#include <memory>
#include <mutex>

#include "quantor/admin.h"
#include "quantor/names.h"
#include "units/settings_source.h"

namespace {

constexpr uint16_t kEnglish = 0x0409;

struct DefaultResolver {
    std::mutex building;
    std::unique_ptr<QtrNameResolver> resolver;
    std::atomic<const QtrNameResolver*> ready{nullptr};
};

// Never destroyed, like the default administration it resolves names of.
DefaultResolver& TheDefaultResolver() {
    static DefaultResolver* const instance = new DefaultResolver;
    return *instance;
}

// The settings' language of unit names; English without settings or for an
// identifier that is no language.
uint16_t DefaultLanguageId() {
    const auto language = quantor::detail::LanguageIdRead();
    if (!language || *language <= 0 || *language > 0xFFFF) return kEnglish;
    return static_cast<uint16_t>(*language);
}

}  // namespace

const QtrNameResolver* QtrNameResolverDefault() {
    DefaultResolver& instance = TheDefaultResolver();
    if (const QtrNameResolver* ready = instance.ready.load(std::memory_order_acquire)) return ready;
    std::lock_guard lock(instance.building);
    if (const QtrNameResolver* ready = instance.ready.load(std::memory_order_relaxed)) return ready;
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    if (!admin || !admin->IsValid()) return nullptr;
    instance.resolver = std::make_unique<QtrNameResolver>(*admin);
    instance.resolver->LanguageLoad(DefaultLanguageId());
    instance.ready.store(instance.resolver.get(), std::memory_order_release);
    return instance.resolver.get();
}

QtrResolvedName NameResolve(const wchar_t* typed) {
    const QtrNameResolver* resolver = QtrNameResolverDefault();
    return resolver ? resolver->Resolve(typed) : QtrResolvedName{};
}
