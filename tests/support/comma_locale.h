// A locale whose decimal point is a comma, set for the length of a test.
#pragma once

#include <clocale>
#include <cstdlib>
#include <string>

namespace talvek::test {

class CommaLocale {
  public:
    CommaLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
#ifdef TALVEK_TEST_LOCALES
        ::setenv("LOCPATH", TALVEK_TEST_LOCALES, 1);
#endif
        for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "German_Germany.1252", "German"}) {
            if (std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',') {
                isSet_ = true;
                return;
            }
        }
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::setlocale(LC_ALL, before_.c_str());
#ifdef TALVEK_TEST_LOCALES
        ::unsetenv("LOCPATH");
#endif
    }

    /// False where the system knows no such locale.
    bool isSet() const {
        return isSet_;
    }

  private:
    std::string before_;
    bool isSet_ = false;
};

}  // namespace talvek::test
