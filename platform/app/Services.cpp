#include "platform/app/Services.h"

#include <langinfo.h>
#include <locale.h>
#include <type_traits>

#include "platform/Error.h"

namespace qz {

namespace {

using SystemLocale = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;

SystemLocale openLocale(const std::string& name) {
    SystemLocale locale(newlocale(LC_NUMERIC_MASK, name.c_str(), nullptr), &freelocale);
    if (!locale) {
        throw PlatformError("The system has no locale \"" + name +
                            "\". `locale -a` lists those that it has; \"C\" is always there.");
    }
    return locale;
}

} // namespace

NumberLocale NumberLocale::named(const std::string& name) {
    return {nl_langinfo_l(RADIXCHAR, openLocale(name).get())};
}

Services& services() {
    static Services instance;
    return instance;
}

ScopedServices::ScopedServices() : saved_(services()) {}

ScopedServices::~ScopedServices() {
    services() = std::move(saved_);
}

void showMessage(const std::string& text) {
    if (services().showMessage) {
        services().showMessage(text);
    }
}

void checkInterrupt() {
    if (services().interruptRequested && services().interruptRequested()) {
        throw Interrupted();
    }
}

} // namespace qz
