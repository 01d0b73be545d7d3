-- A million int additions with a remainder: the cost of a loop pass.
local sum = 0
for i = 0, 999999 do sum = sum + i % 7 end
print(sum)
