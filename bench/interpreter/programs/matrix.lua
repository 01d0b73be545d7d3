-- A 200 x 200 matrix filled and summed element by element, five times.
local a = {}
for i = 1, 200 do
    a[i] = {}
    for j = 1, 200 do a[i][j] = 0.0 end
end
local sum = 0.0
for k = 0, 4 do
    for i = 0, 199 do
        local row = a[i + 1]
        for j = 0, 199 do row[j + 1] = i + j + k + 0.0 end
    end
    for i = 0, 199 do
        for j = 0, 199 do sum = sum + a[i + 1][j + 1] end
    end
end
print(sum)
