-- A million float updates of a first-order filter.
local y = 0.0
local a = 0.999
for i = 0, 999999 do y = a * y + 0.5 * i end
print(y)
