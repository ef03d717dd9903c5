#include "support/IsoTime.h"

juce::String isoTime (juce::Time time)
{
    return juce::String::formatted ("%04d-%02d-%02dT%02d:%02d:%02d.%03d", time.getYear(), time.getMonth() + 1, time.getDayOfMonth(),
                                    time.getHours(), time.getMinutes(), time.getSeconds(), time.getMilliseconds())
         + time.getUTCOffsetString (true);
}
