-- A page of the manual: its title, the list of all pages, links to them, and tables that scroll where they are wide.
-- The names of all pages come as the metadata `source`.

local page = PANDOC_STATE.input_files[1]
local folder = pandoc.path.directory(page)

local function Html(name) return (name:gsub('%.md$', '.html')) end

local function TextOf(file)
  local handle = assert(io.open(pandoc.path.join({folder, file})))
  local text = handle:read('a')
  handle:close()
  return text
end

local function TitleOf(blocks)
  for _, block in ipairs(blocks) do
    if block.t == 'Header' then return pandoc.utils.stringify(block) end
  end
  error(page .. ': a page of the manual needs a heading')
end

local function PageTitle(file) return TitleOf(pandoc.read(TextOf(file), 'gfm').blocks) end

-- In the order in which the front page names them; those that it does not name come last, as they came.
local function InOrder(files)
  local isPage = {}
  for _, file in ipairs(files) do isPage[file] = true end
  local order = {}
  local function Add(file)
    if isPage[file] then
      isPage[file] = nil
      table.insert(order, file)
    end
  end
  Add('index.md')
  pandoc.read(TextOf('index.md'), 'gfm'):walk({Link = function(link) Add((link.target:gsub('#.*', ''))) end})
  for _, file in ipairs(files) do Add(file) end
  return order
end

function Link(link)
  if link.target:match('^%a[%w+.-]*:') then return nil end
  -- What stands beside the manual's folder is not installed with it.
  if link.target:match('^%.%./') or link.target:match('^man/') then return link.content end
  -- A page that goes by the name of its file goes by its title here.
  local file = link.target:gsub('#.*', '')
  if pandoc.utils.stringify(link.content) == file and file:match('^[^/]+%.md$') then
    local isThere, title = pcall(PageTitle, file)
    if isThere then link.content = title end
  end
  link.target = link.target:gsub('^([^#]*)%.md', '%1.html')
  return link
end

function Table(block) return pandoc.Div({block}, {class = 'wide'}) end

function Pandoc(document)
  local files = {}
  for _, file in ipairs(document.meta.source) do table.insert(files, pandoc.utils.stringify(file)) end
  local pages = {}
  for _, file in ipairs(InOrder(files)) do
    local isThis = file == pandoc.path.filename(page)
    table.insert(pages, {file = Html(file), title = pandoc.MetaString(PageTitle(file)), current = isThis})
  end
  document.meta.pages = pages
  document.meta.pagetitle = pandoc.MetaString(TitleOf(document.blocks))
  document.meta.front = pandoc.path.filename(page) == 'index.md'
  return document
end
