#include "HostSimDefaultModel.h"

const char* const HostSimDefaultModel::kText = R"(# hostsim's own model
document C:\Models\Gearbox.gam assembly open
designview "Default"
lod "Master"
view
eye 250 -300 200
target 0 0 0
up 0 0 1
perspective -1
angle 0.78539816339744828
extents 240 180
occurrence Housing:1
occurrence Shaft:1
occurrence Shaft:1|Bearing:1
occurrence Shaft:1|Bearing:2
occurrence Shaft:1|Gear:1
occurrence Shaft:1|Gear:1|Tooth:1
occurrence Shaft:1|Gear:1|Tooth:2
occurrence Cover:1

document C:\Models\Bracket.gpt part open
view
eye 0 0 80
target 0 0 0
up 0 1 0
perspective 0
extents 60 40

document C:\Models\Pump.gam assembly
designview "Exploded"
lod "Simplified"
view
eye 0 -500 0
target 0 0 0
up 0 0 1
perspective -1
angle 0.6
extents 400 300
occurrence Casing:1
occurrence Impeller:1
occurrence Motor:1
occurrence Motor:1|Rotor:1
occurrence Motor:1|Stator:1

active C:\Models\Gearbox.gam
)";
