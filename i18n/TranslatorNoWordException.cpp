#include "i18n/TranslatorNoWordException.h"

namespace nelib {

const char *TranslatorNoWordException::what() const noexcept
{
    return "TranslatorNoWordException";
}

} // namespace nelib
