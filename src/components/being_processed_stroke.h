// What carries a run from one line to the next during formation: the run and
// the stroke that took it.
#ifndef MORVANE_COMPONENTS_BEING_PROCESSED_STROKE_H
#define MORVANE_COMPONENTS_BEING_PROCESSED_STROKE_H

#include "components/binary_connected_component.h"
#include "pixel/binary_run.h"

namespace geometric {

struct BeingProcessedStroke {
    BinaryConnectedComponent* stroke;
    const BinaryRun* run;
};

}  // namespace geometric

#endif
