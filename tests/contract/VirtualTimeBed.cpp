#include "tests/contract/SimulatedBed.h"

namespace vistrel::contract {

std::unique_ptr<ContractBed> makeContractBed() {
  return std::make_unique<SimulatedBed>(platform::simulated::Mode::virtualTime);
}

}  // namespace vistrel::contract
