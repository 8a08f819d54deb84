#include "platform/linux/pipewire/formatRates.h"

#include <spa/param/format.h>
#include <spa/pod/iter.h>

namespace tallyvox {

Graph::Rates formatRates(const spa_pod* format) {
    if (format == nullptr || spa_pod_is_object_type(format, SPA_TYPE_OBJECT_Format) == 0)
        return {};
    const spa_pod_prop* const subtype = spa_pod_find_prop(format, nullptr, SPA_FORMAT_mediaSubtype);
    std::uint32_t kind = 0;
    if (subtype == nullptr || spa_pod_get_id(&subtype->value, &kind) != 0 ||
        kind != SPA_MEDIA_SUBTYPE_raw)
        return {};
    const spa_pod_prop* const rate = spa_pod_find_prop(format, nullptr, SPA_FORMAT_AUDIO_rate);
    if (rate == nullptr)
        return {};

    std::uint32_t count = 0;
    std::uint32_t choice = SPA_CHOICE_None;
    const spa_pod* const values = spa_pod_get_values(&rate->value, &count, &choice);
    if (values->type != SPA_TYPE_Int || values->size != sizeof(std::int32_t))
        return {};
    Graph::Rates rates;
    rates.isRange = choice == SPA_CHOICE_Range || choice == SPA_CHOICE_Step;
    if (choice == SPA_CHOICE_None)
        count = std::min(count, 1U);
    else if (rates.isRange)
        count = std::min(count, 3U);
    const auto* const numbers = static_cast<const std::int32_t*>(SPA_POD_BODY_CONST(values));
    rates.values.assign(numbers, numbers + count);
    return rates;
}

}
