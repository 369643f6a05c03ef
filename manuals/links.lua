-- A manual page has no other document to point into: a link stays as its text. Headings of the
-- documents begin one level lower than those of a page.
function Link(link)
    return link.content
end
function Image()
    return {}
end
function Header(header)
    if header.level > 1 then
        header.level = header.level - 1
    end
    return header
end
