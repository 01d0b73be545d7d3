-- A method of a numeric value called in a loop: the row count of a matrix.
local Matrix = {}
Matrix.__index = Matrix
function Matrix.new(rows, columns)
    local m = setmetatable({data = {}}, Matrix)
    for i = 1, rows do
        m.data[i] = {}
        for j = 1, columns do m.data[i][j] = 0.0 end
    end
    return m
end
function Matrix:rowNumber() return #self.data end
local a = Matrix.new(3, 4)
local sum = 0
for i = 0, 199999 do sum = sum + a:rowNumber() end
print(sum)
